#include "Platform/MacOS/AppKit/ActionTarget.h"
#include "Platform/MacOS/AppKit/AppKitFormWindowPlatform.h"
#include "Platform/MacOS/AppKit/AppKitViewWindowPlatform.h"
#include "Platform/MacOS/AppKit/AppKitWindowPlatform.h"
#include "Platform/MacOS/AppKit/NativeText.h"
#include "Platform/MacOS/AppKit/ObjCHandle.h"
#include "Tests/Contract/RecordingFormOwner.h"
#include "Tests/MacOS/GNUstep/AppKitTest.h"
#include "Tests/MacOS/GNUstep/EmptyView.h"

#include <functional>
#include <memory>
#include <utility>

namespace {

int liveObjects = 0;

} // namespace

/// Is counted while it lives.
@interface TarvexCountedObject : NSObject
@end

@implementation TarvexCountedObject

- (id)init {
    self = [super init];
    ++liveObjects;
    return self;
}

- (void)dealloc {
    --liveObjects;
    [super dealloc];
}

@end

namespace tarvex::test {
namespace {

using Counted = ObjCHandle<TarvexCountedObject*>;

Counted makeCounted() {
    return Counted::adopt([[TarvexCountedObject alloc] init]);
}

class LifetimeTest : public AppKitTest {
protected:
    bool waitUntil(const std::function<bool()>& condition) {
        return test::waitUntil([&] {
            endTurn();
            return condition();
        });
    }

    /// Whether no window is left of what is made and destroyed by the deed.
    bool leavesNoWindow(const std::function<void()>& deed) {
        const std::size_t before = windowCount();
        @autoreleasepool {
            deed();
        }
        return waitUntil([&] { return windowCount() == before; });
    }
};

TEST_F(LifetimeTest, HandleReleasesWhatItTookOver) {
    {
        const Counted handle = makeCounted();
        EXPECT_TRUE(handle);
        EXPECT_EQ(liveObjects, 1);
    }
    EXPECT_EQ(liveObjects, 0);
}

TEST_F(LifetimeTest, SharedObjectOutlivesItsOwner) {
    Counted owner = makeCounted();
    auto shared = Counted::share(owner.get());
    owner = {};
    EXPECT_EQ(liveObjects, 1);
    shared = {};
    EXPECT_EQ(liveObjects, 0);
}

TEST_F(LifetimeTest, CopiesAndMovesKeepTheCount) {
    Counted first = makeCounted();
    Counted second = first;
    Counted third = std::move(first);
    EXPECT_FALSE(first);
    EXPECT_EQ(second.get(), third.get());
    EXPECT_EQ([second.get() retainCount], 2U);
    Counted& same = second;
    second = same;
    EXPECT_EQ([third.get() retainCount], 2U);
    third = makeCounted();
    EXPECT_EQ(liveObjects, 2);
    second = std::move(third);
    EXPECT_EQ(liveObjects, 1);
    second = {};
    EXPECT_EQ(liveObjects, 0);
}

TEST_F(LifetimeTest, ObjectIsKeptUntilTheMainLoopIsBack) {
    keepForThisTurn(makeCounted().get());
    EXPECT_EQ(liveObjects, 1);
    EXPECT_TRUE(waitUntil([] { return liveObjects == 0; }));
}

TEST_F(LifetimeTest, TargetMayEndInItsOwnAction) {
    int performed = 0;
    std::unique_ptr<ActionTarget> target;
    target = std::make_unique<ActionTarget>([&](id) {
        target.reset();
        ++performed;
    });
    const auto receiver = ObjCHandle<id>::share(target->object());
    [receiver.get() performSelector:ActionTarget::selector() withObject:nil];
    [receiver.get() performSelector:ActionTarget::selector() withObject:nil];
    EXPECT_EQ(performed, 1);
}

TEST_F(LifetimeTest, TextGoesThereAndBack) {
    for (const std::string& text :
         {std::string("Zone Editor\xE2\x80\xA6"), std::string("a\0b", 3), std::string()}) {
        EXPECT_EQ(utf8Of(makeString(text).get()), text);
    }
    EXPECT_EQ(utf8Of(nil), "");
}

TEST_F(LifetimeTest, ObjectsOfTheAdaptersAreCounted) {
    AppKitFormWindowPlatform platform(loop_, activation_);
    contract::RecordingFormOwner owner;
    owner.add(ControlKind::pushButton, "button", {10, 10, 90, 30});
    owner.add(ControlKind::pushButton, "other", {10, 50, 90, 30});
    auto window = platform.makeFormWindow({"Window", 3, {100, 100}}, owner);
    EXPECT_EQ(objectsOfAdapters()["TarvexTitledWindow"], 1);
    EXPECT_EQ(objectsOfAdapters()["TarvexButton"], 2);
    window.reset();
    EXPECT_TRUE(waitUntil([] { return objectsOfAdapters().count("TarvexButton") == 0; }));
    EXPECT_EQ(objectsOfAdapters().count("TarvexTitledWindow"), 0U);
}

TEST_F(LifetimeTest, OverlayWindowIsGoneAfterItsEnd) {
    AppKitWindowPlatform platform(loop_);
    EXPECT_TRUE(leavesNoWindow([&] {
        const auto window = platform.makeWindow({.contentRect = {0, 0, 50, 50}});
        window->orderFront();
        endTurn();
    }));
}

TEST_F(LifetimeTest, ViewWindowIsGoneAfterItsEnd) {
    AppKitViewWindowPlatform platform(loop_, activation_);
    EmptyView view;
    EXPECT_TRUE(leavesNoWindow([&] {
        const auto window = platform.makeViewWindow({.contentRect = {0, 0, 50, 50}}, view);
        window->makeKeyAndOrderFront();
        endTurn();
    }));
}

TEST_F(LifetimeTest, FormWindowIsGoneAfterItsEnd) {
    AppKitFormWindowPlatform platform(loop_, activation_);
    contract::RecordingFormOwner owner;
    owner.add(ControlKind::pushButton, "button", {10, 10, 90, 30});
    EXPECT_TRUE(leavesNoWindow([&] {
        const auto window = platform.makeFormWindow({"Window", 3, {100, 100}}, owner);
        window->makeKeyAndOrderFront();
        endTurn();
    }));
}

} // namespace
} // namespace tarvex::test
