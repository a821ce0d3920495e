#include "Platform/MacOS/AppKit/ActivationLoan.h"
#include "Platform/MacOS/AppKit/AppKitFormWindowPlatform.h"
#include "Platform/MacOS/AppKit/NativeGeometry.h"
#include "Tests/Contract/FormWindowClosingContract.h"
#include "Tests/MacOS/GNUstep/AppKitTest.h"

#include <map>
#include <utility>

namespace tarvex::contract {
namespace {

/// Remembers the ids of the controls that its owner gave last; the toolkit's have none.
class RememberingOwner final : public FormOwner {
public:
    explicit RememberingOwner(FormOwner& owner) : owner_(&owner) {}

    [[nodiscard]] Form form(const Size& contentSize) override {
        Form form = owner_->form(contentSize);
        ids_.clear();
        for (const Control& control : form.controls) {
            ids_.push_back(control.id);
        }
        return form;
    }

    void controlChanged(const std::string& controlId, double value) override {
        owner_->controlChanged(controlId, value);
    }

    void windowDidClose() override { owner_->windowDidClose(); }

    /// The place of the control in the form, if it has one.
    [[nodiscard]] std::optional<std::size_t> place(const std::string& controlId) const {
        const auto found = std::find(ids_.begin(), ids_.end(), controlId);
        return found == ids_.end() ? std::nullopt
                                   : std::optional(static_cast<std::size_t>(found - ids_.begin()));
    }

private:
    FormOwner* owner_;
    std::vector<std::string> ids_;
};

/// The adapter, with a remembering owner before each window's own.
class RememberingPlatform final : public FormWindowPlatform {
public:
    RememberingPlatform(MainLoop& mainLoop, ActivationLoan& activation) : platform_(mainLoop, activation) {}

    [[nodiscard]] std::unique_ptr<FormWindow> makeFormWindow(const FormWindowAttributes& attributes,
                                                             FormOwner& owner) override {
        auto& remembering = owners_[attributes.title];
        remembering = std::make_unique<RememberingOwner>(owner);
        return platform_.makeFormWindow(attributes, *remembering);
    }

    void activateIgnoringOtherApps() override { platform_.activateIgnoringOtherApps(); }

    [[nodiscard]] const RememberingOwner& owner(const std::string& title) const { return *owners_.at(title); }

private:
    AppKitFormWindowPlatform platform_;
    std::map<std::string, std::unique_ptr<RememberingOwner>> owners_;
};

std::string shownText(NSView* view) {
    if ([view isKindOfClass:[NSButton class]]) {
        return [[static_cast<NSButton*>(view) title] UTF8String];
    }
    return [view isKindOfClass:[NSTextField class]]
               ? [[static_cast<NSTextField*>(view) stringValue] UTF8String]
               : "";
}

double shownValue(NSView* view) {
    if ([view isKindOfClass:[NSSlider class]]) {
        return [static_cast<NSSlider*>(view) doubleValue];
    }
    const bool isOn = [view isKindOfClass:[NSButton class]] &&
                      [static_cast<NSButton*>(view) state] == NSControlStateValueOn;
    return isOn ? 1 : 0;
}

/// GNUstep's windows and controls; another program is there when this one is not active.
class AppKitFormWindowWorld final : public FormWindowWorld {
public:
    AppKitFormWindowWorld() = default;

    AppKitFormWindowWorld(const AppKitFormWindowWorld&) = delete;
    AppKitFormWindowWorld& operator=(const AppKitFormWindowWorld&) = delete;
    AppKitFormWindowWorld(AppKitFormWindowWorld&&) = delete;
    AppKitFormWindowWorld& operator=(AppKitFormWindowWorld&&) = delete;

    ~AppKitFormWindowWorld() override { settle(); }

    FormWindowPlatform& windows() override { return windows_; }

    std::optional<SeenControl> seen(const std::string& title, const std::string& controlId) override {
        NSView* const view = control(title, controlId);
        if (view == nil) {
            return std::nullopt;
        }
        return SeenControl{shownText(view), shownValue(view),
                           [static_cast<NSControl*>(view) isEnabled] == YES, [view isHidden] == YES};
    }

    Rect windowFrame(const std::string& title) override { return rectOf([window(title) frame]); }

    Rect visibleScreen() override { return rectOf([[NSScreen mainScreen] visibleFrame]); }

    Size contentSize(const std::string& title) override {
        return sizeOf([[window(title) contentView] frame].size);
    }

    bool hasKeyboard(const std::string& title) override { return [window(title) isKeyWindow] == YES; }

    void click(const std::string& title, const std::string& controlId) override {
        NSWindow* const native = window(title);
        const Point middle = test::middleOf(control(title, controlId));
        post(NSLeftMouseDown, native, middle);
        post(NSLeftMouseDragged, native, middle);
        post(NSLeftMouseUp, native, middle);
        settle();
    }

    void dragAcross(const std::string& title, const std::string& controlId, int movements) override {
        NSWindow* const native = window(title);
        NSView* const slider = control(title, controlId);
        const Point middle = test::middleOf(slider);
        const double width = [slider bounds].size.width;
        const double left = middle.x - width / 2;
        post(NSLeftMouseDown, native, {left + 4, middle.y});
        for (int movement = 1; movement <= movements; ++movement) {
            post(NSLeftMouseDragged, native, {left + 4 + (width - 4) * movement / movements, middle.y});
        }
        post(NSLeftMouseUp, native, {left + width, middle.y});
        settle();
    }

    void press(FormKey key) override {
        static const std::map<FormKey, std::pair<unichar, unsigned short>> keys{
            {FormKey::tab, {'\t', 48}},
            {FormKey::space, {' ', 49}},
            {FormKey::enter, {'\r', 36}},
            {FormKey::left, {NSLeftArrowFunctionKey, 123}},
            {FormKey::right, {NSRightArrowFunctionKey, 124}},
            {FormKey::pageUp, {NSPageUpFunctionKey, 116}},
            {FormKey::pageDown, {NSPageDownFunctionKey, 121}},
            {FormKey::home, {NSHomeFunctionKey, 115}},
            {FormKey::end, {NSEndFunctionKey, 119}}};
        const auto [character, code] = keys.at(key);
        @autoreleasepool {
            NSString* const characters = [NSString stringWithCharacters:&character length:1];
            for (const NSEventType type : {NSKeyDown, NSKeyUp}) {
                [NSApp postEvent:[NSEvent keyEventWithType:type
                                                        location:NSZeroPoint
                                                   modifierFlags:0
                                                       timestamp:0
                                                    windowNumber:[[NSApp keyWindow] windowNumber]
                                                         context:nil
                                                      characters:characters
                                     charactersIgnoringModifiers:characters
                                                       isARepeat:NO
                                                         keyCode:code]
                         atStart:NO];
            }
        }
        settle();
    }

    void closeByTitleBar(const std::string& title) override { [window(title) performClose:nil]; }

    void giveKeyboardToAnotherProgram() override { [NSApp deactivate]; }

    bool waitUntil(const std::function<bool()>& condition) override {
        return test::waitUntil([&] {
            settle();
            return condition();
        });
    }

    void settle() override {
        loop_.runPosted();
        test::handOutEvents();
        loop_.runPosted();
    }

private:
    static void post(NSEventType type, NSWindow* window, const Point& location) {
        @autoreleasepool {
            [NSApp postEvent:[NSEvent mouseEventWithType:type
                                                location:NSMakePoint(location.x, location.y)
                                           modifierFlags:0
                                               timestamp:0
                                            windowNumber:[window windowNumber]
                                                 context:nil
                                             eventNumber:0
                                              clickCount:1
                                                pressure:1]
                     atStart:NO];
        }
    }

    /// The newest of that title: the toolkit may not be done with an older one.
    static NSWindow* window(const std::string& title) {
        NSWindow* newest = nil;
        for (NSWindow* window in [NSApp windows]) {
            if (test::isOfAnAdapter(window) && title == [[window title] UTF8String] &&
                (newest == nil || [window windowNumber] > [newest windowNumber])) {
                newest = window;
            }
        }
        return newest;
    }

    /// Nil when there is none of that id.
    NSView* control(const std::string& title, const std::string& controlId) {
        const auto place = windows_.owner(title).place(controlId);
        NSArray* const views = [[window(title) contentView] subviews];
        return place && *place < [views count] ? [views objectAtIndex:*place] : nil;
    }

    test::AppKitSession session_;
    SimulatedMainLoop loop_;
    ActivationLoan activation_{loop_};
    RememberingPlatform windows_{loop_, activation_};
};

INSTANTIATE_TEST_SUITE_P(AppKit, FormWindowContract,
                         ::testing::Values(worldFactory<FormWindowWorld, AppKitFormWindowWorld>("AppKit")),
                         worldName);

INSTANTIATE_TEST_SUITE_P(AppKit, FormWindowClosingContract,
                         ::testing::Values(worldFactory<FormWindowWorld, AppKitFormWindowWorld>("AppKit")),
                         worldName);

} // namespace
} // namespace tarvex::contract
