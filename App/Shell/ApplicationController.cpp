#include "App/Shell/ApplicationController.h"

#include "Core/Configuration/LaunchAtLoginSyncHelper.h"

#include <exception>
#include <utility>

namespace tarvex {

ApplicationController::ApplicationController(std::shared_ptr<GridEditorController> gridEditorController,
                                             std::shared_ptr<DisplayService> displayService,
                                             ApplicationPlatform platform)
    : platform_(std::move(platform)),
      gridEditorController_(std::move(gridEditorController)),
      displayService_(std::move(displayService)) {
    preferencesController_ =
        std::make_shared<PreferencesController>(makeConfigStore(), platform_.notifications);
    preferencesWindowController_ = std::make_unique<PreferencesWindowController>(
        std::make_shared<PreferencesViewController>(
            preferencesController_, PreferencesSurroundings{platform_.keyMonitors, platform_.keyboardLayout,
                                                            platform_.loginItem, platform_.modifierNames}),
        platform_.formWindows);
    aboutWindowController_ = std::make_unique<AboutWindowController>(
        std::make_unique<AboutViewController>(
            [this] { return AboutViewController::defaultVersionProvider(platform_.bundle); },
            platform_.textMeasurer),
        platform_.formWindows);
    hotkeyManager_ = std::make_unique<HotkeyManager>(
        HotkeySurroundings{platform_.hotkeys, platform_.mainLoop, platform_.log, platform_.fileLog});
}

void ApplicationController::start() {
    // Before anybody observes: what this changes is no wish of the user's.
    syncLaunchAtLoginPreferenceWithSystem();
    showOrHideStatusItem();
    registerConfiguredHotkey();
    registerConfiguredPreferencesHotkey();
    observe();
    applyLaunchAtLogin();
    snapController_ = makeSnapController();
    snapController_->start();
}

void ApplicationController::observe() {
    const auto add = [this](std::string_view name, void (ApplicationController::*handler)()) {
        observations_.push_back(
            platform_.notifications.addObserver(name, [this, handler] { (this->*handler)(); }));
    };
    add(notification::hotkeyChanged, &ApplicationController::hotkeyChanged);
    add(notification::preferencesHotkeyChanged, &ApplicationController::preferencesHotkeyChanged);
    add(notification::configChanged, &ApplicationController::configChanged);
}

void ApplicationController::hotkeyChanged() {
    registerConfiguredHotkey();
}

void ApplicationController::preferencesHotkeyChanged() {
    registerConfiguredPreferencesHotkey();
}

void ApplicationController::configChanged() {
    showOrHideStatusItem();
    applyLaunchAtLogin();
    registerConfiguredPreferencesHotkey();
}

void ApplicationController::registerConfiguredHotkey() {
    registerOrUnregister("OpenEditor", editorHotkeyId, preferencesController_->getOpenEditorHotkey(),
                         &ApplicationController::handleOpenEditorHotkey);
}

void ApplicationController::registerConfiguredPreferencesHotkey() {
    registerOrUnregister("OpenPreferences", preferencesHotkeyId,
                         preferencesController_->getOpenPreferencesHotkey(),
                         &ApplicationController::showPreferences);
}

void ApplicationController::registerOrUnregister(const std::string& name, std::uint32_t hotkeyId,
                                                 const std::optional<HotkeyDefinition>& hotkey,
                                                 void (ApplicationController::*action)()) {
    if (!hotkey) {
        logToBoth(name + " hotkey: nil -> unregister");
        hotkeyManager_->unregister(hotkeyId);
        return;
    }
    logToBoth(name + " hotkey: keyCode=" + std::to_string(hotkey->keyCode) +
              " modifiers=" + std::to_string(hotkey->modifiers));
    hotkeyManager_->registerHotkey(hotkeyId, *hotkey, [weakSelf = weak_from_this(), action] {
        if (const auto self = weakSelf.lock()) {
            ((*self).*action)();
        }
    });
}

void ApplicationController::handleOpenEditorHotkey() {
    logToBoth("ApplicationController.handleOpenEditorHotkey");
    if (!preferencesWindowController_->window().isVisible()) {
        gridEditorController_->showEditorForMainDisplay();
    }
}

void ApplicationController::showPreferences() {
    show(preferencesWindowController_->window());
}

void ApplicationController::showAbout() {
    show(aboutWindowController_->window());
}

void ApplicationController::show(FormWindow& window) {
    window.center();
    window.makeKeyAndOrderFront();
    platform_.formWindows.activateIgnoringOtherApps();
}

void ApplicationController::showOrHideStatusItem() {
    if (preferencesController_->getHideMenuBarIcon()) {
        hideStatusItem();
    } else {
        showStatusItem();
    }
}

void ApplicationController::showStatusItem() {
    if (statusItemController_) {
        return;
    }
    statusItemController_ =
        std::make_unique<StatusItemController>(platform_.statusBar, makeStatusItemCallbacks());
    statusItemController_->configureStatusItem();
    statusItemController_->configureMenu();
}

void ApplicationController::hideStatusItem() {
    statusItemController_.reset();
}

StatusItemCallbacks ApplicationController::makeStatusItemCallbacks() {
    const auto weakly = [weakSelf = weak_from_this()](void (ApplicationController::*action)()) {
        return [weakSelf, action] {
            if (const auto self = weakSelf.lock()) {
                ((*self).*action)();
            }
        };
    };
    StatusItemCallbacks callbacks;
    callbacks.onOpenAbout = weakly(&ApplicationController::showAbout);
    callbacks.onOpenPreferences = weakly(&ApplicationController::showPreferences);
    callbacks.displaysProvider = [weakSelf = weak_from_this()] {
        const auto self = weakSelf.lock();
        return self ? self->displayEntries() : std::vector<DisplayMenuEntry>{};
    };
    callbacks.onOpenZoneEditorForDisplay = [weakSelf = weak_from_this()](std::uint32_t displayId) {
        if (const auto self = weakSelf.lock()) {
            self->gridEditorController_->showEditor(displayId);
        }
    };
    callbacks.onQuit = platform_.terminate;
    return callbacks;
}

std::vector<DisplayMenuEntry> ApplicationController::displayEntries() {
    std::vector<DisplayMenuEntry> entries;
    for (const std::uint32_t displayId : displayService_->getActiveDisplays()) {
        entries.push_back({displayService_->getDisplayTitle(displayId), displayId});
    }
    return entries;
}

void ApplicationController::syncLaunchAtLoginPreferenceWithSystem() {
    if (!platform_.loginItem.isBundle()) {
        return;
    }
    const LaunchAtLoginSyncResult result = LaunchAtLoginSyncHelper::computeSync(
        preferencesController_->getLaunchAtLogin(), isRegistered(platform_.loginItem.status()));
    if (result.shouldUpdatePreference) {
        preferencesController_->setLaunchAtLogin(result.updatedValue);
        lastAppliedLaunchAtLogin_ = result.updatedValue;
    }
}

void ApplicationController::applyLaunchAtLogin() {
    if (!platform_.loginItem.isBundle()) {
        return;
    }
    const bool isWanted = preferencesController_->getLaunchAtLogin();
    if (lastAppliedLaunchAtLogin_ == isWanted) {
        return;
    }
    lastAppliedLaunchAtLogin_ = isWanted;
    if (isWanted) {
        tryEnableLaunchAtLogin();
    } else {
        tryDisableLaunchAtLogin();
    }
}

void ApplicationController::tryEnableLaunchAtLogin() {
    if (isRegistered(platform_.loginItem.status())) {
        return;
    }
    try {
        platform_.loginItem.registerMainApplication();
    } catch (const std::exception&) {
        // The wish stands, and is not tried again until it changes.
        return;
    }
}

void ApplicationController::tryDisableLaunchAtLogin() {
    if (!isRegistered(platform_.loginItem.status())) {
        return;
    }
    try {
        platform_.loginItem.unregisterMainApplication();
    } catch (const std::exception&) {
        return;
    }
}

std::unique_ptr<SnapController> ApplicationController::makeSnapController() {
    const LoggerFactory loggers(platform_.log);
    SnapServices services{
        .preferencesController = preferencesController_,
        .gridEditorController = gridEditorController_,
        .configStore = makeConfigStore(),
        .displayService = std::make_shared<DisplayService>(loggers.makeLogger("DisplayService"),
                                                           platform_.displays, platform_.screens),
        .displayFrameService = std::make_shared<DisplayFrameService>(platform_.screens),
        .accessibilityService =
            std::make_shared<AccessibilityService>(platform_.accessibility, platform_.screens, platform_.log),
        .eventTapManager = EventTapManager::make(platform_.eventTap, platform_.mainLoop, platform_.log),
        .coordinateTransformer = CoordinateTransformer(),
        .gridCalculator = GridCalculator(GridSplitNormalizer(GridSplitNormalizer::standardEpsilon)),
        .cellFrameCalculator = CellFrameCalculator(CoordinateTransformer()),
        .gridHitTester = GridHitTester()};
    const SnapPlatform platform{.screens = platform_.screens,
                                .pointer = platform_.pointer,
                                .windows = platform_.windows,
                                .keyWindow = platform_.keyWindow,
                                .log = platform_.log,
                                .fileLog = platform_.fileLog};
    return std::make_unique<SnapController>(std::move(services), platform);
}

std::shared_ptr<ConfigStore> ApplicationController::makeConfigStore() {
    return std::make_shared<ConfigStore>(LoggerFactory(platform_.log).makeLogger("ConfigStore"),
                                         platform_.files);
}

void ApplicationController::logToBoth(const std::string& message) {
    platform_.log.systemLog(message);
    platform_.fileLog.log(message);
}

} // namespace tarvex
