#include "Platform/Linux/X11/ViewInput.h"

#include <utility>

namespace tarvex {

ViewInput::ViewInput(View& view, std::function<void()> feedbackChanged)
    : view_(&view), feedbackChanged_(std::move(feedbackChanged)) {}

template <typename Call>
bool ViewInput::survives(Call call) {
    const std::weak_ptr<const bool> life = life_;
    call();
    return !life.expired();
}

void ViewInput::move(const MouseEvent& event, bool isLeftDown, bool isAnyDown) {
    const bool isSameKind =
        pendingMove_ && pendingMove_->isLeftDown == isLeftDown && pendingMove_->isAnyDown == isAnyDown;
    if (pendingMove_ && !isSameKind && !flushed()) {
        return;
    }
    pendingMove_ = Move{event, isLeftDown, isAnyDown};
}

void ViewInput::flush() {
    static_cast<void>(flushed());
}

bool ViewInput::flushed() {
    const std::optional<Move> move = std::exchange(pendingMove_, std::nullopt);
    if (!move) {
        return true;
    }
    if (isLeftDown_ && !move->isLeftDown) {
        // Somebody else took the pointer away in the middle of the press, and the release went to him.
        return survives([&] { releaseLeft(move->event); });
    }
    if (!isLeftDown_) {
        setFeedback(move->isAnyDown ? std::string() : controlAt(move->event.location), false);
        return move->isAnyDown || survives([&] { view_->mouseMoved(move->event); });
    }
    if (pressed_.empty()) {
        return survives([&] { view_->mouseDragged(move->event); });
    }
    const bool isOver = controlAt(move->event.location) == pressed_;
    setFeedback(isOver ? pressed_ : std::string(), isOver);
    return true;
}

void ViewInput::pressLeft(const MouseEvent& event) {
    if (!flushed() || isLeftDown_) {
        return;
    }
    isLeftDown_ = true;
    pressed_ = controlAt(event.location);
    if (!pressed_.empty()) {
        setFeedback(pressed_, true);
        return;
    }
    view_->mouseDown(event);
}

void ViewInput::releaseLeft(const MouseEvent& event) {
    if (!flushed() || !std::exchange(isLeftDown_, false)) {
        return;
    }
    const std::string pressed = std::exchange(pressed_, {});
    if (pressed.empty()) {
        view_->mouseUp(event);
        return;
    }
    std::string released = controlAt(event.location);
    const bool isUsed = released == pressed;
    setFeedback(std::move(released), false);
    if (isUsed) {
        view_->controlActivated(pressed);
    }
}

void ViewInput::pressRight(const MouseEvent& event) {
    // What lies under a button is not aimed at.
    if (flushed() && controlAt(event.location).empty()) {
        view_->rightMouseDown(event);
    }
}

void ViewInput::leave(const MouseEvent& event) {
    if (!flushed() || isLeftDown_) {
        return;
    }
    setFeedback({}, false);
    view_->mouseMoved(event);
}

void ViewInput::pressKey(const KeyEvent& event) {
    if (flushed()) {
        // A key that the view has no use for has no other taker.
        view_->keyDown(event);
    }
}

std::string ViewInput::controlAt(Point location) {
    const Form form = view_->form();
    for (auto control = form.controls.rbegin(); control != form.controls.rend(); ++control) {
        if (control->kind == ControlKind::pushButton && !control->isHidden &&
            control->frame.contains(location)) {
            return control->isEnabled ? control->id : std::string();
        }
    }
    return {};
}

void ViewInput::setFeedback(std::string hovered, bool isOverPressed) {
    if (hovered == hovered_ && isOverPressed == isOverPressed_) {
        return;
    }
    hovered_ = std::move(hovered);
    isOverPressed_ = isOverPressed;
    feedbackChanged_();
}

} // namespace tarvex
