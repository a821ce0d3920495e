#include "Tests/Contract/MainLoopContract.h"

#include "Platform/Linux/Qt/QtMainLoop.h"
#include "Tests/Contract/X11/MainLoopApplication.h"

#include <chrono>

namespace tarvex::contract {

namespace {

class MainLoopQtWorld final : public MainLoopWorld {
public:
    MainLoop& mainLoop() override { return mainLoop_; }

    double now() override {
        const auto time = std::chrono::steady_clock::now().time_since_epoch();
        return std::chrono::duration<double>(time).count();
    }

    bool waitUntil(const std::function<bool()>& condition) override {
        return application_.waitUntil(condition);
    }

    void settle() override { application_.settle(); }

private:
    MainLoopApplication application_;
    QtMainLoop mainLoop_;
};

INSTANTIATE_TEST_SUITE_P(Qt, MainLoopContract,
                         ::testing::Values(worldFactory<MainLoopWorld, MainLoopQtWorld>("Qt")), worldName);

} // namespace

} // namespace tarvex::contract
