#include "Platform/MacOS/AppKit/AppKitWindowPlatform.h"

#include "Platform/MacOS/AppKit/CanvasView.h"
#include "Platform/MacOS/AppKit/NativeGeometry.h"
#include "Platform/MacOS/AppKit/NativeWindow.h"
#include "Platform/MacOS/AppKit/SceneRenderer.h"

#include <utility>

namespace tarvex {

namespace {

/// A window of the platform. What is asked of it is done together when the main loop is back: the window
/// comes to the front with its newest picture, never with an older one.
class AppKitWindow final : public Window, private CanvasOwner {
public:
    AppKitWindow(MainLoop& mainLoop, const WindowAttributes& attributes) : mainLoop_(&mainLoop) {
        @autoreleasepool {
            const NSRect bounds =
                NSMakeRect(0, 0, attributes.contentRect.width, attributes.contentRect.height);
            canvas_ = ObjCHandle<TarvexCanvasView*>::adopt(
                [[TarvexCanvasView alloc] initTarvexWithFrame:bounds owner:this input:CanvasInput::none]);
            window_ = makeNativeWindow(attributes, canvas_.get());
        }
    }

    AppKitWindow(const AppKitWindow&) = delete;
    AppKitWindow& operator=(const AppKitWindow&) = delete;
    AppKitWindow(AppKitWindow&&) = delete;
    AppKitWindow& operator=(AppKitWindow&&) = delete;

    ~AppKitWindow() override {
        @autoreleasepool {
            [canvas_.get() tarvexForgetOwner];
            [window_.get() close];
        }
    }

    [[nodiscard]] Rect frame() const override { return rectOf([window_.get() frame]); }

    void setScene(Scene scene) override {
        if (scene != scene_) {
            scene_ = std::move(scene);
            needsDisplay_ = true;
            endTurnLater();
        }
    }

    void orderFront() override {
        isWanted_ = true;
        isFrontDue_ = true;
        endTurnLater();
    }

    void orderOut() override {
        isWanted_ = false;
        isFrontDue_ = false;
        endTurnLater();
    }

private:
    void draw() override { drawScene(scene_); }

    void endTurnLater() {
        if (!std::exchange(isTurnEnding_, true)) {
            mainLoop_->post([this, life = std::weak_ptr<const bool>(life_)] {
                if (!life.expired()) {
                    endTurn();
                }
            });
        }
    }

    void endTurn() {
        isTurnEnding_ = false;
        @autoreleasepool {
            if (!isWanted_) {
                [window_.get() orderOut:nil];
                return;
            }
            if (std::exchange(needsDisplay_, false)) {
                [canvas_.get() setNeedsDisplay:YES];
                handOverPicture(window_.get());
            }
            // A new picture alone is no reason to come before what was put in front since.
            if (std::exchange(isFrontDue_, false)) {
                [window_.get() orderFront:nil];
            }
        }
    }

    MainLoop* mainLoop_;
    Scene scene_;
    bool isWanted_ = false;
    bool isFrontDue_ = false;
    bool needsDisplay_ = true;
    bool isTurnEnding_ = false;
    ObjCHandle<TarvexCanvasView*> canvas_;
    ObjCHandle<TarvexWindow*> window_;
    /// Ends with the window, which tells a posted call that nobody wants it any more.
    std::shared_ptr<const bool> life_ = std::make_shared<const bool>(true);
};

} // namespace

std::unique_ptr<Window> AppKitWindowPlatform::makeWindow(const WindowAttributes& attributes) {
    return std::make_unique<AppKitWindow>(*mainLoop_, attributes);
}

} // namespace tarvex
