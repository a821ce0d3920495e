#include "Tests/Contract/LoginItemContract.h"

#include "Platform/Linux/XdgLoginItem.h"
#include "Platform/Posix/PosixFileManager.h"
#include "Tests/Support/X11/ScratchDirectory.h"

#include <filesystem>

namespace tarvex::contract {
namespace {

/// A user's autostart folder, and a system's where the program may stand as well.
class XdgLoginItemWorld final : public LoginItemWorld {
public:
    LoginItemPlatform& platform() override { return *loginItem_; }

    std::unique_ptr<LoginItemPlatform> makePlatformOfBuildTree() override {
        XdgLoginItem::Places places = places_;
        places.executable = scratch_.write("build/release/tarvex", "").string();
        return std::make_unique<XdgLoginItem>(files_, places);
    }

    void enableElsewhere() override {
        writeEntry("[Desktop Entry]\nType=Application\nName=Tarvex\nExec=tarvex\n");
    }

    void disableElsewhere() override {
        writeEntry("[Desktop Entry]\nType=Application\nName=Tarvex\nExec=tarvex\n"
                   "X-GNOME-Autostart-enabled=false\n");
    }

    // Permissions do not bind a superuser, but what is no folder holds no file for anybody.
    void refuseChanges() override {
        const std::filesystem::path entry = std::filesystem::path(places_.userFolder) / "tarvex.desktop";
        if (std::filesystem::exists(entry)) {
            loginItem_ = std::make_unique<XdgLoginItem>(files_, brokenPlaces(entry));
        } else {
            scratch_.write("config/autostart", "in the way");
        }
    }

private:
    // An entry that shines through from the system's folder and cannot be hidden in the user's.
    XdgLoginItem::Places brokenPlaces(const std::filesystem::path& entry) {
        XdgLoginItem::Places places = places_;
        places.systemFolders = {entry.parent_path().string()};
        places.userFolder = scratch_.write("no-folder", "in the way").string();
        return places;
    }

    void writeEntry(const std::string& text) const {
        scratch_.write("config/autostart/tarvex.desktop", text);
    }

    test::ScratchDirectory scratch_;
    PosixFileManager files_{(scratch_.path() / "config").string()};
    XdgLoginItem::Places places_{.executable = scratch_.write("usr/bin/tarvex", "").string(),
                                 .userFolder = (scratch_.path() / "config/autostart").string(),
                                 .systemFolders = {(scratch_.path() / "etc/autostart").string()}};
    std::filesystem::path installed_ = scratch_.write("usr/share/applications/tarvex.desktop", "");
    std::unique_ptr<XdgLoginItem> loginItem_ = std::make_unique<XdgLoginItem>(files_, places_);
};

INSTANTIATE_TEST_SUITE_P(Xdg, LoginItemContract,
                         ::testing::Values(worldFactory<LoginItemWorld, XdgLoginItemWorld>("Xdg")),
                         worldName);

} // namespace
} // namespace tarvex::contract
