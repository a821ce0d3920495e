#include "Platform/Linux/Qt/QtKeyWindow.h"

#include <QApplication>
#include <QWidget>
#include <QWindow>

namespace tarvex {

std::optional<std::string> QtKeyWindow::keyWindowTitle() const {
    // Qt keeps both up to date from focus events; asking costs a look at a variable.
    if (const QWidget* widget = QApplication::activeWindow()) {
        return widget->windowTitle().toStdString();
    }
    if (const QWindow* window = QGuiApplication::focusWindow()) {
        return window->title().toStdString();
    }
    return std::nullopt;
}

} // namespace tarvex
