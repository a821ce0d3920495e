#include "Tests/MacOS/Fakes/FakeMac.h"
#include "Tests/MacOS/Fakes/Unicode.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <dispatch/dispatch.h>

// The fakes judge the adapters; these tests see to it that they can tell right from wrong.
namespace tarvex::fake {
namespace {

using testing::Contains;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;

TEST(FakeMac, WithoutFaultsThereAreNone) {
    FakeMac inner;
    CFRelease(makeString("text"));
    EXPECT_THAT(inner.faults(), IsEmpty());
}

TEST(FakeMac, LeakIsNoticed) {
    FakeMac inner;
    makeString("text");
    EXPECT_THAT(inner.faults(), ElementsAre("leaked: string with 1 references"));
}

TEST(FakeMac, OverReleaseIsNoticed) {
    FakeMac inner;
    const CFStringRef string = makeString("text");
    CFRelease(string);
    CFRelease(string);
    EXPECT_THAT(inner.faults(), ElementsAre("CFRelease of a released string"));
}

TEST(FakeMac, UseAfterReleaseIsNoticed) {
    FakeMac inner;
    const CFStringRef string = makeString("text");
    CFRelease(string);
    EXPECT_EQ(CFStringGetLength(string), 0);
    EXPECT_THAT(inner.faults(), ElementsAre("CFStringGetLength of a released string"));
}

TEST(FakeMac, ObjectOfTheWrongTypeIsNoticed) {
    FakeMac inner;
    const CFNumberRef number = makeNumber(1);
    CFStringGetLength(reinterpret_cast<CFStringRef>(number));
    CFRelease(number);
    EXPECT_THAT(inner.faults(), ElementsAre("CFStringGetLength was given number"));
}

TEST(FakeMac, NullIsNoticed) {
    FakeMac inner;
    CFRelease(nullptr);
    CFRetain(nullptr);
    EXPECT_THAT(inner.faults(), ElementsAre("CFRelease of nothing", "CFRetain of nothing"));
}

TEST(FakeMac, DictionaryOwnsItsEntries) {
    FakeMac inner;
    const void* key = makeString("key");
    const void* value = makeString("value");
    const CFDictionaryRef dictionary = CFDictionaryCreate(
        nullptr, &key, &value, 1, &kCFTypeDictionaryKeyCallBacks, &kCFTypeDictionaryValueCallBacks);
    CFRelease(key);
    CFRelease(value);
    EXPECT_EQ(textOfString(CFDictionaryGetValue(dictionary, key)), "value");
    CFRelease(dictionary);
    EXPECT_THAT(inner.faults(), IsEmpty());
}

TEST(FakeMac, RegistryObjectsAreCounted) {
    FakeMac inner;
    inner.registry.entries.resize(1);
    io_iterator_t iterator = IO_OBJECT_NULL;
    IOServiceGetMatchingServices(kIOMainPortDefault, IOServiceMatching("IODisplayConnect"), &iterator);
    const io_object_t service = IOIteratorNext(iterator);
    IOObjectRelease(iterator);
    IOObjectRelease(iterator);
    EXPECT_NE(service, 0U);
    EXPECT_THAT(inner.faults(),
                ElementsAre("leaked: IOObjectRelease of no object", "leaked: registry service"));
}

TEST(FakeMac, HandlersAndHotkeysAreCounted) {
    FakeMac inner;
    const EventTypeSpec type{kEventClassKeyboard, kEventHotKeyPressed};
    EventHandlerRef handler = nullptr;
    InstallEventHandler(GetApplicationEventTarget(), nullptr, 1, &type, nullptr, &handler);
    EventHotKeyRef hotkey = nullptr;
    RegisterEventHotKey(14, cmdKey, {1, 1}, GetApplicationEventTarget(), 0, &hotkey);
    UnregisterEventHotKey(hotkey);
    UnregisterEventHotKey(hotkey);
    EXPECT_THAT(inner.faults(),
                ElementsAre("leaked: UnregisterEventHotKey of no hotkey", "leaked: event handler"));
}

CFMachPortRef makeTap(CGEventTapCallBack callback = nullptr) {
    return CGEventTapCreate(kCGSessionEventTap, kCGHeadInsertEventTap, kCGEventTapOptionDefault,
                            CGEventMask{1} << kCGEventLeftMouseDown, callback, nullptr);
}

TEST(FakeMac, SourceLeftOnTheLoopIsNoticed) {
    FakeMac inner;
    const CFMachPortRef tap = makeTap();
    const CFRunLoopSourceRef source = CFMachPortCreateRunLoopSource(nullptr, tap, 0);
    CFRunLoopAddSource(CFRunLoopGetMain(), source, kCFRunLoopCommonModes);
    CFRelease(source);
    CFRelease(tap);
    EXPECT_THAT(inner.faults(), Contains("a source was left on the run loop"));
}

TEST(FakeMac, TapStaysUntilItsPortIsInvalidated) {
    FakeMac inner;
    const CFMachPortRef kept = makeTap();
    const CFMachPortRef removed = makeTap();
    CFMachPortInvalidate(removed);
    EXPECT_EQ(inner.eventTaps.liveTaps(), 1U);
    EXPECT_EQ(CFMachPortCreateRunLoopSource(nullptr, removed, 0), nullptr);
    CFRelease(removed);
    CFRelease(kept);
    EXPECT_THAT(inner.faults(), ElementsAre("leaked: event tap with 1 references"));
}

TEST(FakeMac, TapInvalidatedInItsOwnCallbackIsNoticed) {
    FakeMac inner;
    const CFMachPortRef tap = makeTap([](CGEventTapProxy, CGEventType, CGEventRef event, void*) {
        mac().eventTaps.invalidateAll();
        return event;
    });
    inner.eventTaps.send(kCGEventLeftMouseDown);
    inner.eventTaps.handOut();
    CFRelease(tap);
    EXPECT_THAT(inner.faults(), ElementsAre("a tap was invalidated in its own callback"));
}

TEST(FakeMac, ObserversAreCounted) {
    FakeMac inner;
    const CFStringRef name = makeString("something happened");
    const auto callback = [](CFNotificationCenterRef, void* observer, CFNotificationName, const void*,
                             CFDictionaryRef) { ++*static_cast<int*>(observer); };
    int immediate = 0;
    int patient = 0;
    const CFNotificationCenterRef center = CFNotificationCenterGetDistributedCenter();
    CFNotificationCenterAddObserver(center, &immediate, callback, name, nullptr,
                                    CFNotificationSuspensionBehaviorDeliverImmediately);
    CFNotificationCenterAddObserver(center, &patient, callback, name, nullptr,
                                    CFNotificationSuspensionBehaviorHold);
    inner.notifications.tellEverybody("something happened");
    inner.runLoop.settle();
    EXPECT_EQ(immediate, 1);
    EXPECT_EQ(patient, 0);
    CFNotificationCenterRemoveObserver(center, &immediate, name, nullptr);
    CFNotificationCenterRemoveObserver(center, &immediate, name, nullptr);
    CFRelease(name);
    EXPECT_THAT(inner.faults(), ElementsAre("CFNotificationCenterRemoveObserver of none",
                                            "leaked: observer of something happened"));
}

TEST(FakeMac, OtherModesAreNoticed) {
    FakeMac inner;
    const CFStringRef mode = makeString("kCFRunLoopDefaultMode");
    CFRunLoopTimerContext context{};
    const CFRunLoopTimerRef timer = CFRunLoopTimerCreate(
        nullptr, 0, 1, 0, 0, [](CFRunLoopTimerRef, void*) {}, &context);
    CFRunLoopAddTimer(CFRunLoopGetMain(), timer, mode);
    CFRunLoopTimerInvalidate(timer);
    CFRelease(timer);
    CFRelease(mode);
    ASSERT_EQ(inner.faults().size(), 1U);
    EXPECT_THAT(inner.faults().front(), HasSubstr("elsewhere than in the common modes"));
}

TEST(FakeMac, SilentProgramCostsTheTimeout) {
    FakeMac inner;
    const ElementId element = inner.accessibility.add({.program = 1});
    inner.accessibility.freeze(1);
    const double start = inner.runLoop.now();
    AttributeAnswer answer;
    EXPECT_EQ(inner.accessibility.read(element, "AXWindow", FakeAccessibility::defaultTimeout, &answer),
              kAXErrorCannotComplete);
    EXPECT_EQ(inner.runLoop.now() - start, 6.0);
}

TEST(FakeMac, UnicodeIsReadAndWritten) {
    EXPECT_EQ(decodeUtf8("a\u00F6\U0001F5D4"), u"a\u00F6\U0001F5D4");
    EXPECT_EQ(encodeUtf8(u"a\u00F6\U0001F5D4", '?'), "a\u00F6\U0001F5D4");
    EXPECT_EQ(encodeUtf8(std::u16string{u'a', char16_t{0xD83D}}, '?'), "a?");
    for (const char* bad : {"\x80", "\xC0\x80", "\xE2\x82", "\xED\xA0\x80", "\xF4\x90\x80\x80", "\xF8"}) {
        EXPECT_EQ(decodeUtf8(bad), std::nullopt);
    }
    EXPECT_EQ(upperCased(u"a\u00DF\u00F6\u0436\u03B1\u00F7"), u"ASS\u00D6\u0416\u0391\u00F7");
}

} // namespace
} // namespace tarvex::fake
