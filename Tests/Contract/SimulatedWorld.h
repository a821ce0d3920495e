#pragma once

#include "Tests/Contract/ContractWorld.h"
#include "Tests/Support/Simulated/SimulatedDesktop.h"

namespace tarvex::contract {

/// A contract's world on the simulated desktop, whose clock runs only while something is awaited.
template <typename World>
class SimulatedWorld : public World {
public:
    bool waitUntil(const std::function<bool()>& condition) override {
        constexpr double deadline = 10;
        constexpr double step = 0.005;
        for (double waited = 0; waited < deadline; waited += step) {
            desktop_.mainLoop().runPosted();
            if (condition()) {
                return true;
            }
            desktop_.wait(step);
        }
        return condition();
    }

    void settle() override { desktop_.mainLoop().runPosted(); }

protected:
    SimulatedDesktop desktop_;
};

} // namespace tarvex::contract
