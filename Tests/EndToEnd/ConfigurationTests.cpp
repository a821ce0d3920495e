#include "Tests/EndToEnd/DesktopTest.h"
#include "Tests/Support/X11/FileDescriptor.h"

#include <nlohmann/json.hpp>

#include <filesystem>
#include <fstream>
#include <functional>
#include <iterator>
#include <optional>
#include <stdexcept>
#include <string>
#include <sys/socket.h>
#include <sys/un.h>
#include <tuple>
#include <vector>

namespace tarvex::test {
namespace {

constexpr SessionKind plainSession{WindowManagerKind::openbox, false};

struct BrokenFile {
    std::string name;
    std::function<void(const std::filesystem::path&)> make;
    /// What the store says of it.
    std::string complaint;
};

void write(const std::filesystem::path& path, const std::string& text) {
    std::ofstream(path, std::ios::binary) << text;
}

std::string repeated(char character, std::size_t count) {
    std::string text;
    text.resize(count, character);
    return text;
}

void makeSocket(const std::filesystem::path& path) {
    const FileDescriptor socket(::socket(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0));
    sockaddr_un address{};
    address.sun_family = AF_UNIX;
    const std::string name = path.string();
    if (name.size() >= sizeof(address.sun_path)) {
        throw std::runtime_error("the path is too long for a socket: " + name);
    }
    name.copy(address.sun_path, name.size());
    if (::bind(socket.get(), reinterpret_cast<const sockaddr*>(&address), sizeof(address)) != 0) {
        throw std::runtime_error("cannot make a socket at " + name);
    }
}

BrokenFile textFile(const std::string& name, const std::string& text) {
    return {name, [text](const std::filesystem::path& path) { write(path, text); },
            "Failed to decode config: "};
}

std::vector<BrokenFile> brokenFiles() {
    const std::string good = Settings{}.json();
    return {
        textFile("Empty", ""),
        textFile("EmptyObject", "{}"),
        textFile("NotJson", "grids = halves"),
        textFile("CutOff", good.substr(0, good.size() - 1)),
        textFile("InvalidUtf8",
                 "{\"grids\":[],\"defaultGridByDisplayId\":{\"\xFF\xFE\":\"a\"},\"cellMarginPoints\":8}"),
        textFile("DeeplyNested", repeated('[', 100'000)),
        textFile("WrongType", R"({"grids":[],"defaultGridByDisplayId":{},"cellMarginPoints":"8"})"),
        textFile("NotANumber", R"({"grids":[],"defaultGridByDisplayId":{},"cellMarginPoints":NaN})"),
        textFile("NumberTooLarge", R"({"grids":[],"defaultGridByDisplayId":{},"cellMarginPoints":1e999})"),
        textFile("TenMegabytes", repeated(' ', 10'000'000)),
        {"Directory", [](const std::filesystem::path& path) { std::filesystem::create_directory(path); },
         "Failed to read config: "},
        // Whom file permissions do not bind cannot read this one either.
        {"Socket", &makeSocket, "Failed to read config: "},
    };
}

std::string textOf(const std::filesystem::path& path) {
    std::ifstream file(path, std::ios::binary);
    return {std::istreambuf_iterator<char>(file), std::istreambuf_iterator<char>()};
}

// "Restore window size on unsnap" in the preferences, once they are shown.
void clickRestore(Desktop& desktop) {
    XClient& client = desktop.client;
    xcb_window_t preferences = XCB_NONE;
    const auto isShown = [&] {
        for (const xcb_window_t window : client.managedWindows()) {
            if (client.text(window, "_NET_WM_NAME") == "Preferences" && client.isViewable(window)) {
                preferences = window;
            }
        }
        return preferences != XCB_NONE;
    };
    client.waitUntil(isShown, "the preferences are shown");
    desktop.awaitCentered(preferences);
    const auto content = client.geometryInRoot(preferences);
    if (!content) {
        throw std::runtime_error("the preferences are gone");
    }
    desktop.pointer.moveTo({content->x + 30, content->y + 396});
    desktop.pointer.press();
    desktop.pointer.release();
}

class BrokenConfiguration : public ::testing::TestWithParam<std::tuple<BrokenFile, SessionKind>> {};

INSTANTIATE_TEST_SUITE_P(Files, BrokenConfiguration,
                         ::testing::Combine(::testing::ValuesIn(brokenFiles()), allSessions()),
                         [](const auto& info) {
                             return std::get<0>(info.param).name + "_" + nameOf(std::get<1>(info.param));
                         });

TEST_P(BrokenConfiguration, AbandonsTheSnapAndRecoversWithTheFile) {
    const auto& [file, session] = GetParam();
    Desktop desktop(session, {});
    file.make(desktop.tarvex.configPath());
    desktop.tarvex.allowOnStandardError("Tarvex [ConfigStore] error: " + file.complaint);
    desktop.tarvex.allowOnStandardError("SnapController.snapAndHide: failed to load config");
    TestWindow window(desktop.server.displayName());
    const PixelRect area = desktop.screenArea();
    {
        Drag drag(desktop, window.managed());
        drag.pressToMatch(key::super);
        drag.moveTo(pointIn(area, rightHalf));
        desktop.windowManager->barrier();
        const PixelRect dragged = window.managed().requireVisibleFrame();
        drag.drop();
        desktop.tarvex.awaitOnStandardError("SnapController.snapAndHide: failed to load config");
        drag.releaseKeys();
        desktop.expectFrameUnchanged(window.managed(), dragged);
    }
    EXPECT_NE(desktop.tarvex.standardError().find(file.complaint), std::string::npos);
    EXPECT_EQ(desktop.tarvex.countInLog("snapAndHide success"), 0);
    EXPECT_TRUE(std::filesystem::exists(desktop.tarvex.configPath()));
    std::filesystem::remove(desktop.tarvex.configPath());
    desktop.tarvex.writeConfig(Settings{.grids = {{"rows", {}, {0.5}}}}.json());
    const ZoneSpan lower{0, 1, 0.5, 1};
    snapAndExpect(desktop, window.managed(), pointIn(area, lower), zoneFrame(area, lower));
    desktop.tarvex.expectCleanExit();
}

/// Settings that are broken from the start.
class BrokenFromTheStart : public ::testing::TestWithParam<BrokenFile> {};

INSTANTIATE_TEST_SUITE_P(Files, BrokenFromTheStart, ::testing::ValuesIn(brokenFiles()),
                         [](const auto& info) { return info.param.name; });

TEST_P(BrokenFromTheStart, PreferencesShowTheDefaultsAndKeepWhatTheyReplace) {
    DesktopOptions options;
    options.startsTarvex = false;
    Desktop desktop(plainSession, options);
    const std::filesystem::path path = desktop.tarvex.configPath();
    GetParam().make(path);
    const bool isFile = std::filesystem::is_regular_file(path);
    const std::string before = isFile ? textOf(path) : "";
    desktop.tarvex.allowOnStandardError("Tarvex [ConfigStore] error: ");
    desktop.tarvex.allowOnStandardError("CopyElementAtPosition returned nil element");
    desktop.tarvex.start({"--open-preferences"});
    EXPECT_NE(desktop.tarvex.standardError().find(GetParam().complaint), std::string::npos);
    clickRestore(desktop);
    if (isFile) {
        EXPECT_TRUE(desktop.client.waitFor([&] {
            const auto document = nlohmann::json::parse(textOf(path), nullptr, false);
            return document.is_object() && document.value("restoreWindowSizeOnUnsnap", true) == false;
        })) << textOf(path);
        EXPECT_EQ(textOf(path.string() + ".bak"), before);
    } else {
        desktop.tarvex.awaitOnStandardError("Failed to write config: ");
        EXPECT_TRUE(std::filesystem::exists(path));
        EXPECT_FALSE(std::filesystem::is_regular_file(path));
    }
    desktop.tarvex.expectCleanExit();
}

TEST(Configuration, ADanglingLinkIsNoFileAndBringsTheDefaults) {
    Desktop desktop(plainSession, {});
    std::filesystem::create_symlink("nowhere.json", desktop.tarvex.configPath());
    TestWindow window(desktop.server.displayName());
    const PixelRect area = desktop.screenArea();
    snapAndExpect(desktop, window.managed(), pointIn(area, rightHalf), zoneFrame(area, rightHalf));
    EXPECT_TRUE(std::filesystem::is_symlink(desktop.tarvex.configPath()));
    desktop.tarvex.expectCleanExit();
}

/// Settings that are unusual, but not broken, from the start; a setting is changed in the preferences.
class ChangedFromTheStart : public ::testing::Test {
protected:
    ChangedFromTheStart() { tarvex().allowOnStandardError("CopyElementAtPosition returned nil element"); }

    TarvexProgram& tarvex() { return desktop_.tarvex; }

    [[nodiscard]] std::filesystem::path path() { return tarvex().configPath(); }

    /// Whether the settings hold the change, and with it this margin.
    bool waitForChange(double margin) {
        return desktop_.client.waitFor([&] {
            const auto document = nlohmann::json::parse(textOf(path()), nullptr, false);
            return document.is_object() && document.value("restoreWindowSizeOnUnsnap", true) == false &&
                   document.value("cellMarginPoints", 0.0) == margin;
        });
    }

    [[nodiscard]] std::size_t filesBeside() {
        return static_cast<std::size_t>(
            std::distance(std::filesystem::directory_iterator(path().parent_path()), {}));
    }

    Desktop desktop_{plainSession, [] {
                         DesktopOptions options;
                         options.startsTarvex = false;
                         return options;
                     }()};
};

constexpr std::filesystem::perms readOnly = std::filesystem::perms::owner_read;

TEST_F(ChangedFromTheStart, ADanglingLinkIsWrittenThrough) {
    const std::filesystem::path folder = desktop_.server.scratch().folder("dotfiles");
    std::filesystem::create_symlink(folder / "tarvex.json", path());
    tarvex().start({"--open-preferences"});
    clickRestore(desktop_);
    EXPECT_TRUE(waitForChange(8)) << textOf(path());
    EXPECT_TRUE(std::filesystem::is_symlink(path()));
    EXPECT_TRUE(std::filesystem::is_regular_file(std::filesystem::symlink_status(folder / "tarvex.json")));
    EXPECT_EQ(filesBeside(), 1U);
    tarvex().expectCleanExit();
}

TEST_F(ChangedFromTheStart, AReadOnlyFileIsReplacedAndStaysReadOnly) {
    write(path(), Settings{.margin = 3}.json());
    std::filesystem::permissions(path(), readOnly);
    tarvex().start({"--open-preferences"});
    clickRestore(desktop_);
    EXPECT_TRUE(waitForChange(3)) << textOf(path());
    EXPECT_EQ(std::filesystem::status(path()).permissions(), readOnly);
    EXPECT_EQ(filesBeside(), 1U);
    tarvex().expectCleanExit();
}

// The shell's limit counts blocks; none is granted, which binds the superuser as well.
TEST_F(ChangedFromTheStart, AFileThatCannotBeReplacedStaysWhole) {
    const std::string before = Settings{.margin = 3}.json();
    write(path(), before);
    std::filesystem::permissions(path(), readOnly);
    const std::filesystem::path limited = desktop_.server.scratch().write(
        "limited", "#!/bin/sh\nulimit -f 0\nexec '" + std::string(TARVEX_PROGRAM) + "' \"$@\"\n");
    std::filesystem::permissions(limited, std::filesystem::perms::owner_all);
    TarvexProgram program(desktop_.server, limited.string());
    program.allowOnStandardError("Tarvex [ConfigStore] error: Failed to write config: ");
    program.allowOnStandardError("CopyElementAtPosition returned nil element");
    ASSERT_EQ(program.configPath(), path());
    program.launch({"--open-preferences"});
    clickRestore(desktop_);
    program.awaitOnStandardError("Failed to write config: ");
    EXPECT_EQ(textOf(path()), before);
    EXPECT_EQ(std::filesystem::status(path()).permissions(), readOnly);
    EXPECT_EQ(filesBeside(), 1U) << "what was begun is taken away again";
    program.expectCleanExit();
}

TEST(Configuration, ALinkIsFollowedToItsFile) {
    Desktop desktop(plainSession, {});
    const auto target = desktop.server.scratch().write("dotfiles/tarvex.json",
                                                       Settings{.grids = {{"rows", {}, {0.5}}}}.json());
    std::filesystem::create_symlink(target, desktop.tarvex.configPath());
    TestWindow window(desktop.server.displayName());
    const PixelRect area = desktop.screenArea();
    const ZoneSpan lower{0, 1, 0.5, 1};
    snapAndExpect(desktop, window.managed(), pointIn(area, lower), zoneFrame(area, lower));
    desktop.tarvex.expectCleanExit();
}

TEST(Configuration, AnEmptyListOfGridsBringsTheDefaultGrid) {
    DesktopOptions options;
    options.settings = Settings{.grids = {}, .margin = 30};
    Desktop desktop(plainSession, options);
    TestWindow window(desktop.server.displayName());
    const PixelRect area = desktop.screenArea();
    snapAndExpect(desktop, window.managed(), pointIn(area, rightHalf), zoneFrame(area, rightHalf, 30));
    desktop.tarvex.expectCleanExit();
}

TEST(Configuration, TenThousandSplitsStillSnap) {
    Settings settings{.grids = {{"many", {}, {}}}, .margin = 0};
    // All but the last lie in the left tenth, so that the zone to be hit is a wide one.
    for (int split = 1; split < 10000; ++split) {
        settings.grids.front().verticalSplits.push_back(split * 0.00001);
    }
    settings.grids.front().verticalSplits.push_back(0.5);
    DesktopOptions options;
    options.settings = settings;
    Desktop desktop(plainSession, options);
    TestWindow window(desktop.server.displayName());
    const PixelRect area = desktop.screenArea();
    snapAndExpect(desktop, window.managed(), pointIn(area, rightHalf), zoneFrame(area, rightHalf, 0));
    desktop.tarvex.expectCleanExit();
}

TEST(Configuration, AFileThatBreaksDuringTheDragAbandonsTheSnap) {
    Desktop desktop(plainSession, {});
    desktop.tarvex.allowOnStandardError("Tarvex [ConfigStore] error: Failed to decode config: ");
    desktop.tarvex.allowOnStandardError("SnapController.snapAndHide: failed to load config");
    TestWindow window(desktop.server.displayName());
    Drag drag(desktop, window.managed());
    drag.pressToMatch(key::super);
    drag.moveTo({900, 500});
    desktop.tarvex.writeConfig("{");
    desktop.windowManager->barrier();
    const PixelRect dragged = window.managed().requireVisibleFrame();
    drag.drop();
    desktop.tarvex.awaitOnStandardError("SnapController.snapAndHide: failed to load config");
    drag.releaseKeys();
    desktop.expectFrameUnchanged(window.managed(), dragged);
    desktop.tarvex.expectCleanExit();
}

} // namespace
} // namespace tarvex::test
