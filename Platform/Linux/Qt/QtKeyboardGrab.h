#pragma once

#include <QAbstractNativeEventFilter>
#include <QPointer>
#include <QWindow>

#include <functional>

namespace tarvex {

/// Keeps the keyboard with whichever window of this program has the focus, so that no shortcut of the desktop
/// takes a key before it (X Window System Protocol, GrabKeyboard). A window that loses the focus or is hidden
/// lets go of the keyboard; it takes it again with the focus. What another client holds cannot be taken: the
/// next occasion is the notice that he let go, or any call of retry(). Does nothing where the toolkit does
/// not speak to an X server.
class QtKeyboardGrab final : public QAbstractNativeEventFilter {
public:
    /// @param focusLost called when a window of this program loses the focus; it may call setEnabled()
    explicit QtKeyboardGrab(std::function<void()> focusLost);

    QtKeyboardGrab(const QtKeyboardGrab&) = delete;
    QtKeyboardGrab& operator=(const QtKeyboardGrab&) = delete;
    QtKeyboardGrab(QtKeyboardGrab&&) = delete;
    QtKeyboardGrab& operator=(QtKeyboardGrab&&) = delete;
    ~QtKeyboardGrab() override;

    /// Takes the keyboard for the window that has the focus now or will have it, or lets go of it.
    void setEnabled(bool isEnabled);

    /// Tries again when an earlier try has failed. Waits for the server then.
    void retry();

    [[nodiscard]] bool nativeEventFilter(const QByteArray& eventType, void* message,
                                         qintptr* result) override;

private:
    void take(QWindow* window);
    void letGo();

    std::function<void()> focusLost_;
    bool isEnabled_ = false;
    QPointer<QWindow> holder_;
};

} // namespace tarvex
