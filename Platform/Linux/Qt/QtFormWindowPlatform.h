#pragma once

#include "App/Toolkit/FormWindow.h"
#include "App/Toolkit/PointerPlatform.h"
#include "Core/Displays/ScreenPlatform.h"
#include "Platform/Linux/Qt/FormSlider.h"
#include "Platform/Linux/Qt/QtFonts.h"
#include "Platform/Linux/X11/DesktopLayout.h"
#include "Platform/Linux/X11/XConnection.h"
#include "Platform/Linux/X11/XEventPump.h"
#include "Platform/Linux/X11/XUsualBorders.h"
#include "Platform/Linux/X11/XWindowActivation.h"

#include <memory>
#include <optional>
#include <vector>

namespace tarvex {

class QtFormWindow;

/// What a QtFormWindowPlatform works with; all must outlive it.
struct FormWindowSurroundings {
    XConnection& connection;
    XEventPump& pump;
    DesktopLayoutProvider& layout;
    ScreenPlatform& screens;
    PointerPlatform& pointer;
    /// Shared with whoever measures the texts of the forms.
    QtFonts& fonts;
};

/// Titled windows of Qt's own controls. One point is one pixel of the toolkit's, which its scale factor makes
/// larger on the screen. Where the toolkit shows its windows elsewhere than on the X server, as on a Wayland
/// compositor, that places and raises them as it likes.
class QtFormWindowPlatform final : public FormWindowPlatform {
public:
    /// An application object must exist. The platform must outlive its windows.
    explicit QtFormWindowPlatform(const FormWindowSurroundings& surroundings);

    QtFormWindowPlatform(const QtFormWindowPlatform&) = delete;
    QtFormWindowPlatform& operator=(const QtFormWindowPlatform&) = delete;
    QtFormWindowPlatform(QtFormWindowPlatform&&) = delete;
    QtFormWindowPlatform& operator=(QtFormWindowPlatform&&) = delete;
    ~QtFormWindowPlatform() override;

    [[nodiscard]] std::unique_ptr<FormWindow> makeFormWindow(const FormWindowAttributes& attributes,
                                                             FormOwner& owner) override;

    /// Brings the window to the front that was ordered there last, among those that are shown.
    void activateIgnoringOtherApps() override;

private:
    friend class QtFormWindow;

    /// What panels leave of the screen that a window on those pixels of the root window belongs to, or for
    /// none the screen under the pointer. None when there is no screen.
    [[nodiscard]] std::optional<PixelRect> visibleAreaFor(const std::optional<PixelRect>& window);

    void noteOrderedFront(QtFormWindow& window);
    void forget(const QtFormWindow& window);

    FormWindowSurroundings surroundings_;
    XWindowActivation activation_;
    XUsualBorders usualBorders_;
    FormSliderAccessibility sliderAccessibility_;
    /// The one that was ordered to the front last comes last.
    std::vector<QtFormWindow*> windows_;
};

} // namespace tarvex
