#include "Platform/Linux/Qt/QtKeyWindow.h"

#include <QApplication>
#include <QWidget>
#include <QWindow>

namespace tarvex {

std::optional<std::string> QtKeyWindow::keyWindowTitle() const {
    // Qt keeps both up to date from focus events; asking costs a look at a variable. The last window to be
    // hidden may stay the active one until another program's takes over.
    const QWidget* widget = QApplication::activeWindow();
    if (widget != nullptr && widget->isVisible()) {
        return widget->windowTitle().toStdString();
    }
    const QWindow* window = QGuiApplication::focusWindow();
    if (window != nullptr && window->isVisible()) {
        return window->title().toStdString();
    }
    return std::nullopt;
}

} // namespace tarvex
