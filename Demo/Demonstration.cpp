// Shows Tarvex at work on a private virtual display: one window snapped into a single zone, one across two,
// the zone editor, the status item's menu and the preferences, with a picture of each step.

#include "Tests/Support/X11/Compositor.h"
#include "Tests/Support/X11/Keyboard.h"
#include "Tests/Support/X11/Pointer.h"
#include "Tests/Support/X11/RealApplication.h"
#include "Tests/Support/X11/Screenshot.h"
#include "Tests/Support/X11/SessionBus.h"
#include "Tests/Support/X11/TarvexProgram.h"
#include "Tests/Support/X11/TrayHost.h"
#include "Tests/Support/X11/WindowManager.h"

#include <chrono>
#include <exception>
#include <filesystem>
#include <iostream>
#include <map>
#include <stdexcept>
#include <string>
#include <string_view>
#include <vector>

#include "Demo/Wallpaper.h"

namespace tarvex::demo {

namespace {

using namespace tarvex::test;

constexpr int screenWidth = 1600;
constexpr int screenHeight = 1000;

// A wide column in the middle, narrow ones beside it that are divided once more.
constexpr std::string_view settings = R"({
  "grids": [{"id": "default", "name": "Default", "verticalSplits": [0.3, 0.7], "horizontalSplits": [0.68]}],
  "defaultGridByDisplayId": {},
  "cellMarginPoints": 12,
  "openEditorHotkey": {"keyCode": 6, "modifiers": 2304},
  "openPreferencesHotkey": {"keyCode": 35, "modifiers": 2304}
})";

class Demonstration {
public:
    Demonstration(const std::string& program, std::filesystem::path output)
        : output_{std::move(output)},
          server_{screenWidth, screenHeight},
          client_{server_.displayName()},
          windowManager_{server_, WindowManagerKind::openbox},
          compositor_{server_},
          pointer_{server_.displayName()},
          keyboard_{server_.displayName()},
          tarvex_{server_, program} {
        std::filesystem::create_directories(output_);
        XClient wallpaperClient(server_.displayName());
        setWallpaper(wallpaperClient);
        tarvex_.writeConfig(settings);
        tarvex_.setVariable("DBUS_SESSION_BUS_ADDRESS", bus_.address());
        tarvex_.allowOnStandardError("GridEditorController.showEditor");
        // A press on a window of the program's own is a press on none that could be dragged.
        tarvex_.allowOnStandardError("CopyElementAtPosition returned nil element");
        tarvex_.start();
    }

    void run() {
        RealApplication terminal(server_,
                                 {"xterm", "-fa", "DejaVu Sans Mono", "-fs", "11", "-bg", "#1d2433", "-fg",
                                  "#dfe6f2", "-geometry", "76x14+420+730", "-title", "Terminal", "-e", "sh",
                                  "-c", "printf 'Drag me by my title bar.\n'; ls /usr/share; cat"});
        RealApplication icons(server_, {"gtk3-icon-browser"});
        awaitStillPicture();
        take("1-desktop", "two applications where they opened");

        beginDrag(icons);
        hold({key::super}, "modifiers=256");
        pointer_.glideTo({1350, 240});
        awaitZones();
        take("2-one-zone", "Super held: the zones, the one under the pointer filled");
        finishDrag({key::super});
        take("3-snapped", "the window has taken the zone");

        beginDrag(terminal);
        hold({key::super, key::shift}, "modifiers=768");
        pointer_.glideTo({700, 860});
        pointer_.glideTo({240, 860});
        awaitZones();
        take("4-two-zones", "Super and Shift held: every zone passed over is filled");
        finishDrag({key::shift, key::super});
        take("5-snapped-across-two", "the window covers both");
        showEditor();
        showMenu();
        showPreferences();
        tarvex_.expectCleanExit();
    }

private:
    // Moves one line, adds another, and leaves the pointer on a third.
    void showEditor() {
        startAgain("--open-editor");
        awaitStillPicture();
        take("6-zone-editor", "the zone editor: the zones of the display, each with its size");
        pointer_.moveTo({480, 400});
        pointer_.press();
        pointer_.glideTo({560, 400});
        pointer_.release();
        keyboard_.press(key::shift);
        pointer_.moveTo({840, 300});
        pointer_.press();
        pointer_.glideTo({800, 300});
        awaitStillPicture();
        take("7-new-line", "Shift and a press: a vertical line, with the zones it would make");
        pointer_.release();
        keyboard_.release(key::shift);
        pointer_.moveTo({1120, 500});
        awaitStillPicture();
        take("8-line-under-the-pointer",
             "the line under the pointer can be dragged, or deleted with the right button");
        keyboard_.tap(key::escape);
        awaitStillPicture();
    }

    void showMenu() {
        TrayHost tray(server_);
        client_.waitUntil([&] { return !tray.icons().empty(); }, "the status item is in the tray");
        pointer_.moveTo(tray.icons().front().center());
        pointer_.press();
        pointer_.release();
        awaitStillPicture();
        for (const std::uint32_t keysym : {key::down, key::down, key::down, key::right}) {
            keyboard_.tap(keysym);
        }
        awaitStillPicture();
        take("9-menu", "the status item's menu, with an entry for each display");
        keyboard_.tap(key::escape);
        keyboard_.tap(key::escape);
        awaitStillPicture();
    }

    void showPreferences() {
        startAgain("--open-preferences");
        awaitStillPicture();
        take("10-preferences", "the preferences; every change counts at once");
    }

    // Hands the request over to the instance that runs.
    void startAgain(const std::string& option) {
        ChildProcess second(tarvex_.command({option}));
        if (second.waitForExit() != ExitStatus{0, std::nullopt}) {
            throw std::runtime_error("a second start did not hand " + option +
                                     " over: " + second.standardError());
        }
    }

    void beginDrag(RealApplication& application) {
        // Clear of the buttons at the ends of a header bar.
        const PixelPoint handle = application.window().titleBarPoint();
        pointer_.moveTo(handle);
        pointer_.press();
        pointer_.glideTo({handle.x + 30, handle.y + 30});
    }

    // Slower than a script: the zones follow only motion that comes after the keys.
    void hold(const std::vector<std::uint32_t>& keys, std::string_view logged) {
        for (const std::uint32_t key : keys) {
            keyboard_.press(key);
        }
        const std::string line = "updateOverlayState match " + std::string(logged);
        client_.waitUntil([&] { return tarvex_.countInLog(line) > 0; }, "the keys are noticed");
    }

    void finishDrag(const std::vector<std::uint32_t>& keys) {
        pointer_.release();
        awaitStillPicture();
        for (const std::uint32_t key : keys) {
            keyboard_.release(key);
        }
    }

    void awaitZones() {
        client_.waitUntil([this] { return tarvex_.countInLog("SnapController.snapDragStart") > dragCount_; },
                          "the zones follow the drag");
        ++dragCount_;
        awaitStillPicture();
    }

    // The programs draw at their own pace: a picture is good once it has not changed for a while. One with an
    // animation in it is good after two seconds.
    void awaitStillPicture() {
        constexpr int enoughEqualPictures = 30;
        int equalPictures = 0;
        Screenshot last(client_);
        const auto standsStill = [&] {
            Screenshot now(client_);
            equalPictures = now == last ? equalPictures + 1 : 0;
            last = std::move(now);
            return equalPictures >= enoughEqualPictures;
        };
        static_cast<void>(client_.waitFor(standsStill, Deadline(std::chrono::seconds(2))));
    }

    void take(const std::string& name, std::string_view caption) {
        const std::filesystem::path path = output_ / (name + ".png");
        Screenshot(client_).savePng(path);
        std::cout << path.string() << ": " << caption << std::endl;
    }

    std::filesystem::path output_;
    SessionBus bus_;
    XServer server_;
    XClient client_;
    WindowManager windowManager_;
    Compositor compositor_;
    Pointer pointer_;
    Keyboard keyboard_;
    TarvexProgram tarvex_;
    int dragCount_ = 0;
};

} // namespace

} // namespace tarvex::demo

int main(int argc, char** argv) {
    std::map<std::string, std::string> options{{"--program", "tarvex"}, {"--output", "."}};
    for (int index = 1; index + 1 < argc; index += 2) {
        options[argv[index]] = argv[index + 1];
    }
    try {
        tarvex::demo::Demonstration(std::filesystem::absolute(options["--program"]).string(),
                                    options["--output"])
            .run();
    } catch (const std::exception& error) {
        std::cerr << "The demonstration stopped: " << error.what() << "\n";
        return 1;
    }
    return 0;
}
