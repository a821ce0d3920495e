#include "Tests/Contract/KeyboardLayoutContract.h"

#include "Platform/MacOS/Hotkeys/TextInputKeyboardLayout.h"
#include "Tests/MacOS/MacWorld.h"

namespace tarvex::contract {
namespace {

class MacKeyboardLayoutWorld final : public MacWorld<KeyboardLayoutWorld> {
public:
    MacKeyboardLayoutWorld() { choose(KeyboardLayoutName::english); }

    KeyboardLayoutPlatform& platform() override { return layout_; }

    // Keys without a character of their own give control characters on a Mac, or nothing.
    void choose(KeyboardLayoutName layout) override {
        std::map<UInt16, std::u16string>& keys = fake::mac().layouts.keys;
        fake::mac().layouts.deadKeys.clear();
        switch (layout) {
        case KeyboardLayoutName::english:
            keys = {{0, u"a"}, {6, u"z"}, {18, u"1"}, {41, u";"}, {49, u" "}};
            break;
        case KeyboardLayoutName::german:
            keys = {{6, u"y"}, {27, u"\u00DF"}, {41, u"\u00F6"}};
            fake::mac().layouts.deadKeys = {{24, u"\u00B4"}, {50, u"^"}};
            break;
        case KeyboardLayoutName::russian:
            keys = {{0, u"\u0444"}, {12, u"\u0439"}};
            break;
        }
        keys.insert({{122, u"\x10"}, {123, u"\x1C"}, {56, u""}});
    }

    // The key is asked for without the lock, as without any modifier.
    void toggleCapsLock() override {}

private:
    TextInputKeyboardLayout layout_;
};

INSTANTIATE_TEST_SUITE_P(MacOS, KeyboardLayoutContract,
                         ::testing::Values(worldFactory<KeyboardLayoutWorld, MacKeyboardLayoutWorld>("Fake")),
                         worldName);

} // namespace
} // namespace tarvex::contract
