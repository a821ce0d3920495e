#pragma once

#include "Platform/Linux/Qt/FormRealizer.h"
#include "Platform/Linux/Qt/QtFormWindowPlatform.h"
#include "Platform/Linux/X11/XWindowBorders.h"

#include <QWidget>

#include <functional>
#include <memory>
#include <optional>
#include <string>

namespace tarvex {

/// The toolkit's window of a form. Closing hides it. Escape and the desktop's key for closing a window close
/// it, unless a control or somebody who listens to all keys takes them; those keys are not waited for with
/// the toolkit's shortcuts, which would come first.
class FormWidget final : public QWidget {
public:
    explicit FormWidget(const FormWindowAttributes& attributes);

    /// Called when fonts and colours may stand for something else.
    std::function<void()> lookChanged = [] {};
    /// Called when it was hidden, but not when it was iconified.
    std::function<void()> hidden = [] {};

protected:
    void changeEvent(QEvent* event) override;
    void hideEvent(QHideEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;
};

/// A window of the platform.
class QtFormWindow final : public FormWindow {
public:
    QtFormWindow(QtFormWindowPlatform& platform, const FormWindowAttributes& attributes, FormOwner& owner);
    QtFormWindow(const QtFormWindow&) = delete;
    QtFormWindow& operator=(const QtFormWindow&) = delete;
    QtFormWindow(QtFormWindow&&) = delete;
    QtFormWindow& operator=(QtFormWindow&&) = delete;
    ~QtFormWindow() override;

    /// Neither an iconified window nor a closed one is; one on another virtual desktop is.
    [[nodiscard]] bool isVisible() const override;
    /// Takes effect when the main loop is back, so that it may be called from within a use of a control.
    void setNeedsLayout() override;
    /// A shown window stays on its screen, a hidden one goes to that of the pointer.
    void center() override;
    void makeKeyAndOrderFront() override;
    void close() override;

    /// Brings the window to the front of all programs' windows, and the keyboard to it.
    void activate();

    [[nodiscard]] FormWidget& widget() { return *widget_; }

private:
    /// The toolkit destroys the native window of one that the user closes, and makes another for the next
    /// showing.
    void bindNative();
    void layOut();
    void handleHiding();
    void handleUse(const std::string& id, double value);
    /// The window manager has set the borders.
    void handleBorders();
    /// Those that the window manager has set, else those that it sets for windows of this kind.
    [[nodiscard]] XBorders readBorders();
    [[nodiscard]] PixelRect pixelFrame() const;

    QtFormWindowPlatform* platform_;
    FormOwner* owner_;
    Size contentSize_;
    std::unique_ptr<FormWidget> widget_;
    FormRealizer realizer_;
    /// Of the X server; none when the toolkit works without one.
    std::optional<xcb_window_t> native_;
    std::unique_ptr<XWindowBorders> borders_;
    /// Those that the window was centred with; none once they have been seen around the shown window.
    std::optional<XBorders> centeredWith_;
    bool needsLayout_ = false;
};

} // namespace tarvex
