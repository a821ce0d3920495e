#pragma once

#include "App/Shell/BundleInformation.h"
#include "App/Shell/LoginItemPlatform.h"
#include "App/Toolkit/StatusItem.h"
#include "Tests/Support/Simulated/Journal.h"
#include "Tests/Support/Simulated/SimulatedFormWindows.h"

#include <functional>
#include <memory>
#include <optional>
#include <stdexcept>
#include <string>
#include <vector>

namespace tarvex {

/// The bar of status items.
class SimulatedStatusBar final : public StatusBarPlatform {
public:
    explicit SimulatedStatusBar(Journal& journal) : journal_(&journal) {}

    [[nodiscard]] std::unique_ptr<StatusItem> makeStatusItem(StatusItemDelegate& delegate) override;

    [[nodiscard]] bool hasItem() const { return delegate_ != nullptr; }

    /// How many items there have been.
    [[nodiscard]] int made() const { return made_; }

    /// Whether a person sees it.
    [[nodiscard]] bool isShown() const { return hasItem() && hasTray; }

    /// Opens the menu and gives what it shows.
    [[nodiscard]] Menu open() const { return delegate_->menuWillOpen(); }

    /// Opens the menu and chooses the item of that title, in the menu or in one of its submenus. One that is
    /// disabled or has no action does nothing. Throws std::out_of_range when there is none.
    void choose(const std::string& title);

    /// Whether there is a bar on the screen.
    bool hasTray = true;

    std::optional<StatusItemAppearance> appearance;
    std::optional<Menu> menu;

private:
    class Item;

    Journal* journal_;
    StatusItemDelegate* delegate_ = nullptr;
    int made_ = 0;
};

/// The system's registry of login items.
class SimulatedLoginItem final : public LoginItemPlatform {
public:
    explicit SimulatedLoginItem(Journal& journal) : journal_(&journal) {}

    [[nodiscard]] bool isBundle() override { return isBundled; }

    [[nodiscard]] LoginItemStatus status() override { return current; }

    void registerMainApplication() override {
        journal_->note("login item register");
        onRequest();
        refuseIfWanted();
        current = LoginItemStatus::enabled;
    }

    void unregisterMainApplication() override {
        journal_->note("login item unregister");
        onRequest();
        refuseIfWanted();
        current = LoginItemStatus::notRegistered;
    }

    bool isBundled = true;
    bool refuses = false;
    LoginItemStatus current = LoginItemStatus::notRegistered;
    /// Called with every request, before it is answered.
    std::function<void()> onRequest = [] {};

private:
    void refuseIfWanted() const {
        if (refuses) {
            throw std::runtime_error("refused");
        }
    }

    Journal* journal_;
};

/// What the program was packed with.
class SimulatedBundle final : public BundleInformation {
public:
    [[nodiscard]] std::optional<std::string> shortVersionString() override { return stated; }

    [[nodiscard]] std::optional<std::string> versionFileText() override { return packed; }

    std::optional<std::string> stated;
    std::optional<std::string> packed;
};

} // namespace tarvex
