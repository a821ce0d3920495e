#pragma once

#include "App/ZoneEditor/GridEditorOverlayView.h"
#include "Platform/Linux/Qt/QtFonts.h"
#include "Platform/Linux/Qt/QtMainLoop.h"
#include "Platform/Linux/Qt/QtTextMeasurer.h"
#include "Platform/Linux/Qt/XViewWindowPlatform.h"
#include "Platform/Linux/X11/MonitorTracker.h"
#include "Platform/Linux/X11/XConnection.h"
#include "Platform/Linux/X11/XEventPump.h"
#include "Tests/Support/X11/XServer.h"

#include <functional>
#include <memory>

namespace tarvex::benchmark {

/// A view that counts how often it is drawn and passes everything on.
class CountingView final : public View {
public:
    explicit CountingView(View& view) : view_(&view) {}

    [[nodiscard]] Scene draw() override {
        ++draws_;
        return view_->draw();
    }

    [[nodiscard]] Form form() override { return view_->form(); }

    void mouseMoved(const MouseEvent& event) override { view_->mouseMoved(event); }

    void mouseDown(const MouseEvent& event) override { view_->mouseDown(event); }

    void mouseDragged(const MouseEvent& event) override { view_->mouseDragged(event); }

    void mouseUp(const MouseEvent& event) override { view_->mouseUp(event); }

    void rightMouseDown(const MouseEvent& event) override { view_->rightMouseDown(event); }

    bool keyDown(const KeyEvent& event) override { return view_->keyDown(event); }

    void controlActivated(const std::string& id) override { view_->controlActivated(id); }

    void screensChanged() override { view_->screensChanged(); }

    [[nodiscard]] int draws() const { return draws_; }

private:
    View* view_;
    int draws_ = 0;
};

/// The zone editor of the program, open over a whole virtual display of 2560 by 1440 pixels, in this process.
class EditorRig {
public:
    static constexpr int width = 2560;
    static constexpr int height = 1440;

    /// An editor of that many equal zones.
    EditorRig(int columns, int rows);

    [[nodiscard]] GridEditorOverlayView& view() { return view_; }

    [[nodiscard]] int pictures() const { return counting_.draws(); }

    /// Handles events, and waits for more, until the condition holds.
    void pumpUntil(const std::function<bool()>& condition);

    /// Handles events until the server has dealt with everything that was sent to it.
    void settle();

    [[nodiscard]] const test::XServer& server() const { return server_; }

private:
    test::XServer server_{width, height};
    std::unique_ptr<XConnection> connection_;
    XEventPump pump_;
    MonitorTracker monitors_;
    QtFonts fonts_;
    QtTextMeasurer textMeasurer_;
    QtMainLoop mainLoop_;
    XViewWindowPlatform windows_;
    GridEditorOverlayView view_;
    CountingView counting_;
    std::unique_ptr<ViewWindow> window_;
};

} // namespace tarvex::benchmark
