#pragma once

#include "App/Toolkit/MainLoop.h"
#include "App/Toolkit/View.h"
#include "Core/Displays/ScreenPlatform.h"
#include "Platform/MacOS/AppKit/ActionTarget.h"
#include "Platform/MacOS/AppKit/ActivationLoan.h"
#include "Platform/MacOS/AppKit/CanvasView.h"
#include "Platform/MacOS/AppKit/FormRealizer.h"
#include "Platform/MacOS/AppKit/NativeWindow.h"

#include <memory>
#include <string>
#include <vector>

namespace tarvex {

/// A window of AppKitViewWindowPlatform. The view's picture is drawn when the toolkit asks for it, its
/// controls are brought up to date when the main loop is back.
class AppKitViewWindow final : public ViewWindow, private CanvasOwner {
public:
    AppKitViewWindow(MainLoop& mainLoop, ActivationLoan& activation, const WindowAttributes& attributes,
                     View& view);
    AppKitViewWindow(const AppKitViewWindow&) = delete;
    AppKitViewWindow& operator=(const AppKitViewWindow&) = delete;
    AppKitViewWindow(AppKitViewWindow&&) = delete;
    AppKitViewWindow& operator=(AppKitViewWindow&&) = delete;
    ~AppKitViewWindow() override;

    [[nodiscard]] Rect frame() const override;
    void setNeedsDisplay() override;
    void makeKeyAndOrderFront() override;

private:
    void draw() override;

    void mouseMoved(const MouseEvent& event) override { view_->mouseMoved(event); }

    void mouseDown(const MouseEvent& event) override { view_->mouseDown(event); }

    void mouseDragged(const MouseEvent& event) override { view_->mouseDragged(event); }

    void mouseUp(const MouseEvent& event) override { view_->mouseUp(event); }

    void rightMouseDown(const MouseEvent& event) override { view_->rightMouseDown(event); }

    bool keyDown(const KeyEvent& event) override { return view_->keyDown(event); }

    void realizeForm();
    void noteScreens();

    MainLoop* mainLoop_;
    ActivationLoan* activation_;
    View* view_;
    ObjCHandle<TarvexCanvasView*> canvas_;
    ObjCHandle<TarvexWindow*> window_;
    std::unique_ptr<FormRealizer> controls_;
    /// The screens that the window lies on, without their names.
    std::vector<Screen> grounds_;
    ActionTarget screensChanged_;
    bool isFormDue_ = false;
    /// Ends with the window, which tells a posted call that nobody wants it any more.
    std::shared_ptr<const bool> life_ = std::make_shared<const bool>(true);
};

} // namespace tarvex
