#pragma once

#include "App/Toolkit/View.h"

#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <string>

namespace tarvex {

/// Tells a view, and the buttons over it, what the pointer and the keys do. Every call into the view may
/// destroy this object.
class ViewInput {
public:
    /// @param view must outlive the object
    /// @param feedbackChanged called when a button is to look different
    ViewInput(View& view, std::function<void()> feedbackChanged);

    ViewInput(const ViewInput&) = delete;
    ViewInput& operator=(const ViewInput&) = delete;
    ViewInput(ViewInput&&) = delete;
    ViewInput& operator=(ViewInput&&) = delete;
    ~ViewInput() = default;

    /// Where the pointer is now and which buttons are down. Of several moves in a row only the last is told,
    /// once flush() or another call comes.
    void move(const MouseEvent& event, bool isLeftDown, bool isAnyDown);

    void pressLeft(const MouseEvent& event);
    void releaseLeft(const MouseEvent& event);
    void pressRight(const MouseEvent& event);

    /// The pointer has left with no button down.
    void leave(const MouseEvent& event);

    void pressKey(const KeyEvent& event);

    /// Tells what has been held back.
    void flush();

    /// The button that a release would use or a press begin with; empty for none.
    [[nodiscard]] const std::string& hoveredControl() const { return hovered_; }

    /// The button that is held down under the pointer; empty for none.
    [[nodiscard]] const std::string& pressedControl() const { return isOverPressed_ ? pressed_ : none_; }

private:
    struct Move {
        MouseEvent event;
        bool isLeftDown = false;
        bool isAnyDown = false;
    };

    /// Whether this object outlived what the call told the view.
    template <typename Call>
    bool survives(Call call);

    [[nodiscard]] bool flushed();
    [[nodiscard]] std::string controlAt(Point location);
    void setFeedback(std::string hovered, bool isOverPressed);

    View* view_;
    std::function<void()> feedbackChanged_;
    std::optional<Move> pendingMove_;
    /// The press goes on: the view's, or that of the pressed control.
    bool isLeftDown_ = false;
    std::string pressed_;
    bool isOverPressed_ = false;
    std::string hovered_;
    std::string none_;
    std::shared_ptr<const bool> life_ = std::make_shared<const bool>(true);
};

} // namespace tarvex
