#include "Platform/Linux/Qt/QtKeyMonitor.h"

#include "App/Input/EventTapPlatform.h"
#include "Platform/Linux/Qt/QtKeyboardGrab.h"
#include "Platform/Linux/X11/VirtualKeyCodes.h"
#include "Platform/Linux/X11/XKeyboardNotices.h"
#include "Platform/Linux/X11/XModifierMap.h"

#include <QApplication>
#include <QKeyEvent>
#include <QObject>

#include <algorithm>
#include <array>
#include <cstdint>
#include <limits>
#include <map>
#include <optional>
#include <utility>

namespace tarvex {

namespace {

constexpr std::array<std::pair<Qt::KeyboardModifier, std::uint64_t>, 4> flagsOfModifiers{
    {{Qt::ShiftModifier, event_flag::shift},
     {Qt::ControlModifier, event_flag::control},
     {Qt::AltModifier, event_flag::option},
     {Qt::MetaModifier, event_flag::command}}};

std::optional<std::uint16_t> keyCodeOf(const QKeyEvent& event) {
    const std::uint32_t key = event.nativeScanCode();
    return key > std::numeric_limits<std::uint8_t>::max() ? std::nullopt
                                                          : virtualKeyCodeOf(static_cast<std::uint8_t>(key));
}

} // namespace

/// Stands before the program's windows while somebody is interested.
class QtKeyMonitor::Filter final : public QObject, public std::enable_shared_from_this<Filter> {
public:
    Filter(XConnection& connection, XEventPump& pump)
        : modifiers_(connection),
          keyboardNotices_(connection, pump, [this] { modifiers_.invalidate(); }),
          grab_([this] { forgetKeys(); }) {}

    int add(KeyHandler handler) {
        // From then on it stays, since a key may be held for as long as a person likes.
        if (!std::exchange(isInstalled_, true)) {
            QCoreApplication::instance()->installEventFilter(this);
        }
        handlers_.emplace(++lastNumber_, std::make_shared<KeyHandler>(std::move(handler)));
        update();
        return lastNumber_;
    }

    void remove(int number) {
        handlers_.erase(number);
        update();
    }

    /// The platform has gone.
    void close() {
        handlers_.clear();
        forgetKeys();
        if (QCoreApplication::instance() != nullptr) {
            QCoreApplication::instance()->removeEventFilter(this);
        }
    }

    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    /// What became of the press of a key that is still down.
    struct Press {
        quint64 time = 0;
        bool isSwallowed = false;
    };

    /// The last release, which the server also tells between two repetitions, with the press that follows at
    /// the same instant. The toolkit marks such presses only when it finds them beside the release.
    struct Release {
        quint32 key = 0;
        quint64 time = 0;
        /// None when the press was not seen.
        std::optional<bool> isSwallowed;
    };

    [[nodiscard]] bool handlePress(const QKeyEvent& event);
    [[nodiscard]] bool handleRepetition(const QKeyEvent& event);
    [[nodiscard]] bool isRepetition(const QKeyEvent& event) const;
    [[nodiscard]] bool handleRelease(const QKeyEvent& event);
    [[nodiscard]] bool decide(const QKeyEvent& event);
    [[nodiscard]] bool report(const KeyEvent& event);
    /// None when they would not tell all that is held.
    [[nodiscard]] std::optional<std::uint64_t> flagsOf(const QKeyEvent& event);

    void forgetKeys() {
        down_.clear();
        lastRelease_ = {};
        update();
    }

    void update();

    std::map<int, std::shared_ptr<KeyHandler>> handlers_;
    int lastNumber_ = 0;
    /// By the toolkit's number of the physical key.
    std::map<quint32, Press> down_;
    Release lastRelease_;
    bool isInstalled_ = false;
    XModifierMap modifiers_;
    XKeyboardNotices keyboardNotices_;
    QtKeyboardGrab grab_;
};

void QtKeyMonitor::Filter::update() {
    grab_.setEnabled(!handlers_.empty() || std::any_of(down_.begin(), down_.end(), [](const auto& key) {
        return key.second.isSwallowed;
    }));
}

bool QtKeyMonitor::Filter::eventFilter(QObject* watched, QEvent* event) {
    // A handler may be the end of the platform.
    const std::shared_ptr<Filter> self = shared_from_this();
    switch (event->type()) {
    case QEvent::ShortcutOverride: {
        // It comes before the press, and has no shortcut triggered when somebody accepts it.
        const bool isSwallowed = handlePress(*static_cast<QKeyEvent*>(event));
        if (isSwallowed) {
            event->accept();
        }
        return isSwallowed;
    }
    case QEvent::KeyPress:
        grab_.retry();
        // Windows get it first and hand it to what is in them.
        return watched->isWindowType() && handlePress(*static_cast<QKeyEvent*>(event));
    case QEvent::KeyRelease:
        return watched->isWindowType() && handleRelease(*static_cast<QKeyEvent*>(event));
    case QEvent::MouseButtonPress:
    case QEvent::MouseButtonRelease:
        grab_.retry();
        return false;
    default:
        return false;
    }
}

bool QtKeyMonitor::Filter::handlePress(const QKeyEvent& event) {
    if (isRepetition(event)) {
        return handleRepetition(event);
    }
    const auto known = down_.find(event.nativeScanCode());
    if (known != down_.end() && known->second.time == event.timestamp()) {
        return known->second.isSwallowed;
    }
    return decide(event);
}

bool QtKeyMonitor::Filter::isRepetition(const QKeyEvent& event) const {
    return event.isAutoRepeat() ||
           (lastRelease_.key == event.nativeScanCode() && lastRelease_.time == event.timestamp());
}

bool QtKeyMonitor::Filter::handleRepetition(const QKeyEvent& event) {
    const quint32 key = event.nativeScanCode();
    if (const auto known = down_.find(key); known != down_.end()) {
        return known->second.isSwallowed;
    }
    if (lastRelease_.key != key || !lastRelease_.isSwallowed) {
        return !handlers_.empty() && QApplication::activePopupWidget() == nullptr;
    }
    // That was no release.
    const bool isSwallowed = *lastRelease_.isSwallowed;
    down_[key] = {event.timestamp(), isSwallowed};
    update();
    return isSwallowed;
}

bool QtKeyMonitor::Filter::decide(const QKeyEvent& event) {
    const quint32 key = event.nativeScanCode();
    const std::optional<std::uint16_t> keyCode = keyCodeOf(event);
    down_.erase(key);
    // The keys of an open menu are the menu's.
    const bool isMenuOpen = QApplication::activePopupWidget() != nullptr;
    if (handlers_.empty() || isMenuOpen || (keyCode && isModifierKey(*keyCode))) {
        return false;
    }
    // A handler that removes its monitor must find that the rest of the key is waited for.
    down_[key] = {event.timestamp(), true};
    const std::optional<std::uint64_t> flags = flagsOf(event);
    const bool isSwallowed = !keyCode || !flags || report({*keyCode, *flags});
    if (const auto press = down_.find(key); press != down_.end()) {
        press->second.isSwallowed = isSwallowed;
    }
    update();
    return isSwallowed;
}

bool QtKeyMonitor::Filter::report(const KeyEvent& event) {
    const auto present = handlers_;
    return std::any_of(present.begin(), present.end(), [&](const auto& entry) {
        return handlers_.contains(entry.first) && !(*entry.second)(event);
    });
}

bool QtKeyMonitor::Filter::handleRelease(const QKeyEvent& event) {
    const auto press = down_.find(event.nativeScanCode());
    lastRelease_ = {event.nativeScanCode(), event.timestamp(), std::nullopt};
    if (press == down_.end()) {
        return false;
    }
    lastRelease_.isSwallowed = press->second.isSwallowed;
    if (!event.isAutoRepeat()) {
        down_.erase(press);
        update();
    }
    return *lastRelease_.isSwallowed;
}

std::optional<std::uint64_t> QtKeyMonitor::Filter::flagsOf(const QKeyEvent& event) {
    if (QGuiApplication::platformName() == QLatin1String("xcb")) {
        // The same reading of the keyboard's map as for the grabs of hotkeys.
        const std::uint32_t modifiers = event.nativeModifiers();
        return modifiers_.isTold(modifiers) ? std::optional(modifiers_.eventFlags(modifiers)) : std::nullopt;
    }
    if (event.modifiers().testFlag(Qt::GroupSwitchModifier)) {
        return std::nullopt;
    }
    std::uint64_t flags = 0;
    for (const auto& [modifier, flag] : flagsOfModifiers) {
        flags |= event.modifiers().testFlag(modifier) ? flag : 0;
    }
    return flags;
}

class QtKeyMonitor::Monitor final : public KeyMonitor {
public:
    Monitor(const std::shared_ptr<Filter>& filter, int number) : filter_(filter), number_(number) {}

    Monitor(const Monitor&) = delete;
    Monitor& operator=(const Monitor&) = delete;
    Monitor(Monitor&&) = delete;
    Monitor& operator=(Monitor&&) = delete;

    ~Monitor() override {
        if (const auto filter = filter_.lock()) {
            filter->remove(number_);
        }
    }

private:
    std::weak_ptr<Filter> filter_;
    int number_;
};

QtKeyMonitor::QtKeyMonitor(XConnection& connection, XEventPump& pump)
    : filter_(std::make_shared<Filter>(connection, pump)) {}

QtKeyMonitor::~QtKeyMonitor() {
    filter_->close();
}

std::unique_ptr<KeyMonitor> QtKeyMonitor::addLocalKeyDownMonitor(KeyHandler handler) {
    return std::make_unique<Monitor>(filter_, filter_->add(std::move(handler)));
}

} // namespace tarvex
