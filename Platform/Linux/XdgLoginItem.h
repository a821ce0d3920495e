#pragma once

#include "App/Shell/LoginItemPlatform.h"
#include "Core/Files/FileManager.h"
#include "Platform/Linux/DesktopEntry.h"

#include <optional>
#include <string>
#include <vector>

namespace tarvex {

/// The program as an entry "tarvex.desktop" of the Desktop Application Autostart Specification. The user's
/// entry stands for that of the system, where there is one. An entry counts when a desktop would start
/// something by it, whatever its Exec names: the user may have put a wrapper there. One whose program is gone
/// does not, so that enabling it again puts it right.
class XdgLoginItem final : public LoginItemPlatform {
public:
    struct Places {
        /// The running executable.
        std::string executable;
        /// The folders of entries: the user's, empty for none, and the system's, the most important first.
        std::string userFolder;
        std::vector<std::string> systemFolders;

        /// What holds for this process.
        [[nodiscard]] static Places standard();
    };

    /// @param files must outlive the object
    XdgLoginItem(FileManager& files, Places places);

    [[nodiscard]] bool isBundle() override;

    [[nodiscard]] LoginItemStatus status() override;

    /// Has the user's entry start the running executable. Keys of other kinds in an entry that is there
    /// already are kept.
    void registerMainApplication() override;

    /// Removes the user's entry, or hides the system's behind it.
    void unregisterMainApplication() override;

private:
    [[nodiscard]] std::string userPath() const;
    [[nodiscard]] std::optional<DesktopEntry> read(const std::string& path) const;
    [[nodiscard]] bool isStarted(const DesktopEntry& entry) const;
    [[nodiscard]] bool isStartedBySystem() const;
    void write(const DesktopEntry& entry) const;

    FileManager* files_;
    Places places_;
};

} // namespace tarvex
