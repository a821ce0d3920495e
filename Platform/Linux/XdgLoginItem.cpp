#include "Platform/Linux/XdgLoginItem.h"

#include "Platform/Linux/Installation.h"
#include "Platform/Linux/XdgDirectories.h"

#include <cerrno>
#include <cstring>
#include <unistd.h>
#include <utility>

namespace tarvex {

namespace {

constexpr const char* fileName = "/tarvex.desktop";
constexpr const char* hidden = "Hidden";
// What GNOME's and others' tools for autostarted programs write.
constexpr const char* enabled = "X-GNOME-Autostart-enabled";

DesktopEntry makeEntry() {
    DesktopEntry entry;
    entry.set("Type", "Application");
    entry.set("Name", "Tarvex");
    entry.set("Icon", "tarvex");
    entry.set("Terminal", "false");
    return entry;
}

} // namespace

XdgLoginItem::Places XdgLoginItem::Places::standard() {
    return {.executable = Installation::executablePath(),
            .userFolder = XdgDirectories::autostart(),
            .systemFolders = XdgDirectories::systemAutostart()};
}

XdgLoginItem::XdgLoginItem(FileManager& files, Places places) : files_(&files), places_(std::move(places)) {}

bool XdgLoginItem::isBundle() {
    return Installation::prefixOf(places_.executable, *files_).has_value();
}

LoginItemStatus XdgLoginItem::status() {
    if (!places_.userFolder.empty() && files_->fileExists(userPath())) {
        const std::optional<DesktopEntry> entry = read(userPath());
        return entry && isStarted(*entry) ? LoginItemStatus::enabled : LoginItemStatus::notRegistered;
    }
    return isStartedBySystem() ? LoginItemStatus::enabled : LoginItemStatus::notRegistered;
}

void XdgLoginItem::registerMainApplication() {
    if (places_.executable.empty()) {
        throw FileError("Cannot tell where the running program is");
    }
    DesktopEntry entry = read(userPath()).value_or(makeEntry());
    entry.set("Type", "Application");
    entry.set("Exec", DesktopEntry::execOf(places_.executable));
    // Each of these would keep it from being started.
    for (const char* obstacle : {hidden, enabled, "TryExec"}) {
        entry.remove(obstacle);
    }
    write(entry);
}

void XdgLoginItem::unregisterMainApplication() {
    if (isStartedBySystem()) {
        DesktopEntry entry = read(userPath()).value_or(makeEntry());
        entry.set(hidden, "true");
        write(entry);
        return;
    }
    if (places_.userFolder.empty()) {
        return;
    }
    if (::unlink(userPath().c_str()) != 0 && errno != ENOENT) {
        throw FileError("Cannot remove \"" + userPath() + "\": " + std::strerror(errno));
    }
}

std::string XdgLoginItem::userPath() const {
    return places_.userFolder + fileName;
}

std::optional<DesktopEntry> XdgLoginItem::read(const std::string& path) const {
    try {
        return DesktopEntry::parse(files_->readFile(path));
    } catch (const FileError&) {
        return std::nullopt;
    }
}

bool XdgLoginItem::isStarted(const DesktopEntry& entry) const {
    const std::string program = DesktopEntry::programOf(entry.value("Exec").value_or(""));
    const bool isGone = program.starts_with('/') && !files_->fileExists(program);
    return !program.empty() && !isGone && !entry.flag(hidden, false) && entry.flag(enabled, true);
}

bool XdgLoginItem::isStartedBySystem() const {
    for (const std::string& folder : places_.systemFolders) {
        const std::string path = folder + fileName;
        if (files_->fileExists(path)) {
            const std::optional<DesktopEntry> entry = read(path);
            return entry && isStarted(*entry);
        }
    }
    return false;
}

void XdgLoginItem::write(const DesktopEntry& entry) const {
    if (places_.userFolder.empty()) {
        throw FileError("There is no folder for settings");
    }
    files_->createDirectory(places_.userFolder);
    files_->writeFileAtomically(userPath(), entry.text());
}

} // namespace tarvex
