#include "Platform/Linux/Qt/ControlRealizer.h"

#include "Platform/Linux/Qt/FormLabel.h"
#include "Platform/Linux/Qt/FormSlider.h"
#include "Platform/Linux/Qt/TextColors.h"

#include <QCheckBox>
#include <QPushButton>
#include <QSignalBlocker>

#include <algorithm>
#include <utility>

namespace tarvex {

namespace {

// A lone ampersand would underline what follows it.
QString titleOf(const Control& control) {
    return QString::fromStdString(control.text).replace(u'&', QStringLiteral("&&"));
}

class LabelRealizer final : public ControlRealizer {
public:
    LabelRealizer(FormLabel& label, QtFonts& fonts) : ControlRealizer(label, fonts), label_(&label) {}

protected:
    void show(const Control& control) override { label_->setControl(control); }

private:
    FormLabel* label_;
};

class SliderRealizer final : public ControlRealizer {
public:
    SliderRealizer(FormSlider& slider, QtFonts& fonts, Used used)
        : ControlRealizer(slider, fonts), slider_(&slider) {
        QObject::connect(slider_, &QSlider::valueChanged, slider_,
                         [slider = slider_, used = std::move(used)] { used(slider->controlValue()); });
    }

protected:
    void show(const Control& control) override { slider_->setControl(control); }

    // The groove's ends keep off the texts beside it.
    [[nodiscard]] QRect fitted(const QRect& frame) const override {
        constexpr int gap = 8;
        return frame.adjusted(gap, 0, -gap, 0);
    }

    [[nodiscard]] bool isOutlined() const override { return true; }

private:
    FormSlider* slider_;
};

class PushButtonRealizer final : public ControlRealizer {
public:
    PushButtonRealizer(QPushButton& button, QtFonts& fonts, Used used)
        : ControlRealizer(button, fonts), button_(&button) {
        // Return presses it like Space, as the toolkit has it in its dialogs.
        button_->setAutoDefault(true);
        QObject::connect(button_, &QPushButton::clicked, button_, [used = std::move(used)] { used(0); });
    }

protected:
    void show(const Control& control) override { button_->setText(titleOf(control)); }

private:
    QPushButton* button_;
};

class CheckboxRealizer final : public ControlRealizer {
public:
    CheckboxRealizer(QCheckBox& box, QtFonts& fonts, Used used) : ControlRealizer(box, fonts), box_(&box) {
        QObject::connect(box_, &QCheckBox::toggled, box_,
                         [used = std::move(used)](bool isOn) { used(isOn ? 1 : 0); });
    }

protected:
    void show(const Control& control) override {
        box_->setText(titleOf(control));
        box_->setChecked(control.value != 0);
    }

    [[nodiscard]] bool isOutlined() const override { return true; }

private:
    QCheckBox* box_;
};

/// What the form says, else the text, unless that is but a symbol: then what the symbol is called.
QString accessibleNameOf(const Control& control) {
    if (!control.accessibleName.empty()) {
        return QString::fromStdString(control.accessibleName);
    }
    QString text = QString::fromStdString(control.text);
    const bool hasWords =
        std::any_of(text.begin(), text.end(), [](QChar character) { return character.isLetterOrNumber(); });
    return hasWords || control.toolTip.empty() ? text : QString::fromStdString(control.toolTip);
}

} // namespace

std::unique_ptr<ControlRealizer> ControlRealizer::make(ControlKind kind, QWidget& form, QtFonts& fonts,
                                                       Used used) {
    // The form's widget owns its children.
    switch (kind) {
    case ControlKind::slider:
        return std::make_unique<SliderRealizer>(*new FormSlider(form), fonts, std::move(used));
    case ControlKind::pushButton:
        return std::make_unique<PushButtonRealizer>(*new QPushButton(&form), fonts, std::move(used));
    case ControlKind::checkbox:
        return std::make_unique<CheckboxRealizer>(*new QCheckBox(&form), fonts, std::move(used));
    case ControlKind::label:
        break;
    }
    return std::make_unique<LabelRealizer>(*new FormLabel(form, fonts), fonts);
}

ControlRealizer::~ControlRealizer() {
    if (widget_) {
        widget_->disconnect();
        widget_->setObjectName({});
        widget_->hide();
        widget_->deleteLater();
    }
}

void ControlRealizer::realize(const Control& control, const QRect& frame) {
    if (!widget_) {
        return;
    }
    const QSignalBlocker blocker(widget_);
    show(control);
    widget_->setFont(fonts_->qtFont(control.font));
    widget_->setGeometry(fitted(frame));
    if (isOutlined() && widget_->parentWidget() != nullptr) {
        widget_->setPalette(outlinedPalette(widget_->parentWidget()->palette()));
    }
    widget_->setToolTip(QString::fromStdString(control.toolTip));
    widget_->setAccessibleName(accessibleNameOf(control));
    widget_->setAccessibleDescription(QString::fromStdString(control.toolTip));
    widget_->setEnabled(control.isEnabled);
    widget_->setVisible(!control.isHidden);
}

} // namespace tarvex
