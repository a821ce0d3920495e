#include "Platform/Linux/Qt/FormRealizer.h"

#include "Platform/Linux/Qt/SceneGeometry.h"

#include <algorithm>
#include <utility>

namespace tarvex {

FormRealizer::FormRealizer(QWidget& view, QtFonts& fonts, Used used)
    : view_(&view), fonts_(&fonts), used_(std::move(used)) {}

void FormRealizer::realize(const Form& form, double viewHeight) {
    removeAllBut(form);
    const SceneGeometry geometry(viewHeight);
    std::vector<std::string> ids;
    for (const Control& control : form.controls) {
        Entry& entry = entryFor(control);
        ids.push_back(control.id);
        if (entry.shown != control) {
            entry.realizer->realize(control, geometry.pixelsOf(control.frame).value_or(QRect()));
            entry.shown = control;
        }
    }
    setOrder(std::move(ids));
}

void FormRealizer::forgetShown() {
    for (auto& [id, entry] : entries_) {
        entry.shown.reset();
    }
}

QWidget* FormRealizer::firstReachable() const {
    for (const std::string& id : order_) {
        QWidget* const control = widget(id);
        if ((control->focusPolicy() & Qt::TabFocus) != 0 && control->isEnabled() && !control->isHidden()) {
            return control;
        }
    }
    return nullptr;
}

QWidget* FormRealizer::widget(const std::string& id) const {
    const auto found = entries_.find(id);
    return found == entries_.end() ? nullptr : found->second.realizer->widget();
}

void FormRealizer::removeAllBut(const Form& form) {
    std::erase_if(entries_, [&](const auto& entry) {
        return std::none_of(form.controls.begin(), form.controls.end(), [&](const Control& control) {
            return control.id == entry.first && control.kind == entry.second.kind;
        });
    });
}

FormRealizer::Entry& FormRealizer::entryFor(const Control& control) {
    Entry& entry = entries_[control.id];
    if (!entry.realizer) {
        entry.kind = control.kind;
        entry.realizer = ControlRealizer::make(
            control.kind, *view_, *fonts_, [this, id = control.id](double value) { handleUse(id, value); });
        entry.realizer->widget()->setObjectName(QString::fromStdString(control.id));
        order_.clear();
    }
    return entry;
}

void FormRealizer::setOrder(std::vector<std::string> ids) {
    if (ids == order_) {
        return;
    }
    order_ = std::move(ids);
    QWidget* before = nullptr;
    for (const std::string& id : order_) {
        QWidget* const control = widget(id);
        control->raise();
        if (control->focusPolicy() == Qt::NoFocus) {
            continue;
        }
        if (before != nullptr) {
            QWidget::setTabOrder(before, control);
        }
        before = control;
    }
}

void FormRealizer::handleUse(const std::string& id, double value) {
    // A copy, since the use may take the control away, and the original id with it.
    const std::string usedId = id;
    if (const auto found = entries_.find(usedId); found != entries_.end()) {
        // What the person did may not be what the form wants.
        found->second.shown.reset();
    }
    used_(usedId, value);
}

} // namespace tarvex
