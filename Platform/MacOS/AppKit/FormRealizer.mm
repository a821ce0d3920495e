#include "Platform/MacOS/AppKit/FormRealizer.h"

#include <algorithm>
#include <utility>

namespace tarvex {

FormRealizer::FormRealizer(NSView* view, FirstClick firstClick, Used used)
    : view_(ObjCHandle<NSView*>::share(view)), firstClick_(firstClick), used_(std::move(used)) {}

void FormRealizer::realize(const Form& form) {
    @autoreleasepool {
        removeAllBut(form);
        std::vector<std::string> ids;
        for (const Control& control : form.controls) {
            ids.push_back(control.id);
            realizerFor(control).realize(control);
        }
        setOrder(std::move(ids));
    }
}

NSControl* FormRealizer::view(const std::string& controlId) const {
    const auto found = entries_.find(controlId);
    return found == entries_.end() ? nil : found->second.realizer->view();
}

NSView* FormRealizer::firstUsable() const {
    const auto found = std::find_if(order_.begin(), order_.end(), [this](const std::string& controlId) {
        return entries_.at(controlId).isUsable;
    });
    return found == order_.end() ? view_.get() : view(*found);
}

void FormRealizer::removeAllBut(const Form& form) {
    std::erase_if(entries_, [&](const auto& entry) {
        return std::none_of(form.controls.begin(), form.controls.end(), [&](const Control& control) {
            return control.id == entry.first && control.kind == entry.second.kind;
        });
    });
}

ControlRealizer& FormRealizer::realizerFor(const Control& control) {
    Entry& entry = entries_[control.id];
    entry.isUsable = control.kind != ControlKind::label && control.isEnabled && !control.isHidden;
    if (!entry.realizer) {
        entry.kind = control.kind;
        entry.realizer =
            ControlRealizer::make(control.kind, firstClick_, [this, controlId = control.id](double value) {
                handleUse(controlId, value);
            });
        order_.clear();
    }
    return *entry.realizer;
}

void FormRealizer::setOrder(std::vector<std::string> ids) {
    if (ids == order_) {
        return;
    }
    order_ = std::move(ids);
    const auto views = ObjCHandle<NSMutableArray*>::adopt([[NSMutableArray alloc] init]);
    for (const std::string& controlId : order_) {
        [views.get() addObject:view(controlId)];
    }
    // Adding a view once more would take it out of the window first, and the keyboard from it.
    [view_.get() setSubviews:views.get()];
    // The tabulator goes from one to the next, and from the superview to the first.
    NSView* before = view_.get();
    for (NSView* control in views.get()) {
        [before setNextKeyView:control];
        before = control;
    }
    [before setNextKeyView:view_.get()];
}

void FormRealizer::handleUse(const std::string& controlId, double value) {
    // Copies, since the use may take the control away, and all of this with it.
    const std::string usedId = controlId;
    const Used used = used_;
    if (const auto found = entries_.find(usedId); found != entries_.end()) {
        found->second.realizer->forgetShown();
    }
    used(usedId, value);
}

} // namespace tarvex
