#include "Tests/Contract/HotkeyContract.h"

#include "Tests/Contract/X11/HotkeyFixture.h"

namespace tarvex::contract {

namespace {

class HotkeyX11World final : public HotkeyWorld {
public:
    HotkeyPlatform& platform() override { return platform_; }

    void type(std::uint32_t keyCode, std::uint32_t modifiers) override { typist_.type(keyCode, modifiers); }

    // The keyboard ends with the server.
    void toggleCapsLock() override { typist_.keyboard().tapKey(x_key::capsLock); }

    int reachedOthers() override { return other_.count(); }

    bool waitUntil(const std::function<bool()>& condition) override { return adapters_.waitUntil(condition); }

    void settle() override { adapters_.catchUp(); }

private:
    test::XServer server_;
    XInputAdapters adapters_{server_.displayName()};
    XHotkeyPlatform platform_{*adapters_.connection, adapters_.pump};
    Typist typist_{server_.displayName()};
    KeyCountingWindow other_{server_.displayName()};
};

INSTANTIATE_TEST_SUITE_P(X11, HotkeyContract,
                         ::testing::Values(worldFactory<HotkeyWorld, HotkeyX11World>("Xvfb")), worldName);

} // namespace

} // namespace tarvex::contract
