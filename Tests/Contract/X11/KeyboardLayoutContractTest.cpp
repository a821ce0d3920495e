#include "Tests/Contract/KeyboardLayoutContract.h"

#include "Platform/Linux/Qt/QtText.h"
#include "Platform/Linux/X11/XKeyboardLayout.h"
#include "Tests/Contract/X11/HotkeyFixture.h"

namespace tarvex::contract {

namespace {

class KeyboardLayoutX11World final : public KeyboardLayoutWorld {
public:
    KeyboardLayoutPlatform& platform() override { return layout_; }

    void choose(KeyboardLayoutName layout) override {
        switch (layout) {
        case KeyboardLayoutName::english:
            return setLayout(server_, "us");
        case KeyboardLayoutName::german:
            return setLayout(server_, "de");
        case KeyboardLayoutName::russian:
            return setLayout(server_, "ru");
        }
    }

    void toggleCapsLock() override { keyboard_.tapKey(x_key::capsLock); }

    bool waitUntil(const std::function<bool()>& condition) override { return adapters_.waitUntil(condition); }

    void settle() override { adapters_.catchUp(); }

private:
    test::XServer server_;
    XInputAdapters adapters_{server_.displayName()};
    XKeyboardLayout layout_{*adapters_.connection, adapters_.pump, &QtText::upperCased};
    test::Keyboard keyboard_{server_.displayName()};
};

INSTANTIATE_TEST_SUITE_P(X11, KeyboardLayoutContract,
                         ::testing::Values(worldFactory<KeyboardLayoutWorld, KeyboardLayoutX11World>("Xvfb")),
                         worldName);

} // namespace

} // namespace tarvex::contract
