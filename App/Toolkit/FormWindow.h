#pragma once

#include "App/Toolkit/Form.h"
#include "Core/Geometry.h"

#include <cstdint>
#include <memory>
#include <string>

namespace tarvex {

/// What a titled window is, fixed when it is made. The numbers are those of AppKit's NSWindow.
struct FormWindowAttributes {
    /// UTF-8.
    std::string title;
    /// 3 is titled and closable.
    std::uint32_t styleMask = 3;
    /// In points.
    Size contentSize;
    /// 0 is normal, 3 floats above other applications' normal windows.
    std::int32_t level = 0;
    /// A closed window is hidden and kept.
    bool isReleasedWhenClosed = false;

    bool operator==(const FormWindowAttributes&) const = default;
};

/// What fills a titled window with controls and hears of their use. Called on the main thread. It may close
/// the window from within controlChanged(), not destroy it.
class FormOwner {
public:
    FormOwner() = default;
    FormOwner(const FormOwner&) = delete;
    FormOwner& operator=(const FormOwner&) = delete;
    FormOwner(FormOwner&&) = delete;
    FormOwner& operator=(FormOwner&&) = delete;
    virtual ~FormOwner() = default;

    /// The controls as they are now, laid out for a content area of that size. Asked for by the time the
    /// window is first shown, after every use of a control, and whenever a window that has asked was told
    /// that it needs layout.
    [[nodiscard]] virtual Form form(const Size& contentSize) = 0;

    /// The user used the control of that id; the value is the one that it has now.
    virtual void controlChanged(const std::string& id, double value) = 0;

    /// The window was closed, whether by its close() or by the user, who has its title bar and keys for that.
    /// Called once for each closing, when the window is hidden already; not for one that was not open, not
    /// when it is iconified, and not when it is destroyed.
    virtual void windowDidClose() {}
};

/// Port: a native window with a title and controls. It is made hidden.
class FormWindow {
public:
    FormWindow() = default;
    FormWindow(const FormWindow&) = delete;
    FormWindow& operator=(const FormWindow&) = delete;
    FormWindow(FormWindow&&) = delete;
    FormWindow& operator=(FormWindow&&) = delete;
    virtual ~FormWindow() = default;

    [[nodiscard]] virtual bool isVisible() const = 0;

    /// The form is to be asked for anew.
    virtual void setNeedsLayout() = 0;

    /// Puts the window in the middle of its screen.
    virtual void center() = 0;

    /// Shows the window in front and gives it the keyboard.
    virtual void makeKeyAndOrderFront() = 0;

    /// Hides the window.
    virtual void close() = 0;
};

/// Port: makes titled windows.
class FormWindowPlatform {
public:
    FormWindowPlatform() = default;
    FormWindowPlatform(const FormWindowPlatform&) = delete;
    FormWindowPlatform& operator=(const FormWindowPlatform&) = delete;
    FormWindowPlatform(FormWindowPlatform&&) = delete;
    FormWindowPlatform& operator=(FormWindowPlatform&&) = delete;
    virtual ~FormWindowPlatform() = default;

    /// A new hidden window for the owner, which must outlive it; never null.
    [[nodiscard]] virtual std::unique_ptr<FormWindow> makeFormWindow(const FormWindowAttributes& attributes,
                                                                     FormOwner& owner) = 0;

    /// Brings the program to the front of all others.
    virtual void activateIgnoringOtherApps() = 0;
};

} // namespace tarvex
