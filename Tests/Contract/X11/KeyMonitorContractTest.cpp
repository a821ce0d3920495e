#include "Tests/Contract/KeyMonitorContract.h"

#include "Tests/Contract/X11/KeyMonitorFixture.h"

#include <stdexcept>

namespace tarvex::contract {

namespace {

class KeyMonitorQtWorld final : public KeyMonitorWorld {
public:
    KeyMonitorQtWorld() {
        if (!desktop_.showAndFocus(window_)) {
            throw std::runtime_error("the window does not get the keyboard");
        }
    }

    KeyMonitorPlatform& platform() override { return desktop_.monitors; }

    void type(std::uint16_t keyCode, std::uint32_t modifiers) override {
        desktop_.typist.type(keyCode, modifiers);
    }

    void typeModifier(std::uint32_t modifier) override { desktop_.typist.typeModifier(modifier); }

    int reachedWindow() override { return static_cast<int>(window_.presses.size()); }

    bool waitUntil(const std::function<bool()>& condition) override { return desktop_.waitUntil(condition); }

    void settle() override { desktop_.settle(); }

private:
    KeyMonitorDesktop desktop_;
    KeyWidget window_;
};

INSTANTIATE_TEST_SUITE_P(Qt, KeyMonitorContract,
                         ::testing::Values(worldFactory<KeyMonitorWorld, KeyMonitorQtWorld>("Qt")),
                         worldName);

} // namespace

} // namespace tarvex::contract
