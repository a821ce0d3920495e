#include "Platform/Linux/Qt/QtFormWindowPlatform.h"

#include "Platform/Linux/Qt/LazyFormWindow.h"
#include "Platform/Linux/Qt/QtFormWindow.h"

#include <algorithm>

namespace tarvex {

QtFormWindowPlatform::QtFormWindowPlatform(const FormWindowSurroundings& surroundings)
    : surroundings_(surroundings),
      activation_(surroundings.connection, surroundings.pump),
      usualBorders_(surroundings.connection, surroundings.pump) {}

QtFormWindowPlatform::~QtFormWindowPlatform() = default;

std::unique_ptr<FormWindow> QtFormWindowPlatform::makeFormWindow(const FormWindowAttributes& attributes,
                                                                 FormOwner& owner) {
    return std::make_unique<LazyFormWindow>([this, attributes, &owner] {
        auto window = std::make_unique<QtFormWindow>(*this, attributes, owner);
        windows_.insert(windows_.begin(), window.get());
        return window;
    });
}

void QtFormWindowPlatform::activateIgnoringOtherApps() {
    const auto front = std::find_if(windows_.rbegin(), windows_.rend(),
                                    [](const QtFormWindow* window) { return window->isVisible(); });
    if (front != windows_.rend()) {
        (*front)->activate();
    }
}

std::optional<PixelRect> QtFormWindowPlatform::visibleAreaFor(const std::optional<PixelRect>& window) {
    const std::vector<Screen> screens = surroundings_.screens.screens();
    if (screens.empty()) {
        return std::nullopt;
    }
    const DesktopLayout& layout = surroundings_.layout.layout();
    const Point point =
        window ? layout.screenPointOfPixel(window->x + window->width / 2, window->y + window->height / 2)
               : surroundings_.pointer.mouseLocation();
    const auto found = std::find_if(screens.begin(), screens.end(),
                                    [&](const Screen& screen) { return screen.frame.contains(point); });
    return layout.pixelsOfScreenRect((found != screens.end() ? *found : screens.front()).visibleFrame);
}

void QtFormWindowPlatform::noteOrderedFront(QtFormWindow& window) {
    forget(window);
    windows_.push_back(&window);
}

void QtFormWindowPlatform::forget(const QtFormWindow& window) {
    std::erase(windows_, &window);
}

} // namespace tarvex
