#include "Tests/Support/X11/SessionBus.h"
#include "Tests/Support/X11/TarvexProgram.h"

#include <gtest/gtest.h>

#include <chrono>
#include <csignal>
#include <filesystem>
#include <fstream>
#include <memory>
#include <stdexcept>
#include <string>
#include <sys/socket.h>
#include <sys/un.h>
#include <thread>

namespace tarvex::test {
namespace {

const ExitStatus success{0, std::nullopt};

/// A display whose server hangs: connections to it come about, and nobody ever answers.
class SilentDisplay {
public:
    SilentDisplay() {
        while (!listens(++number_)) {
            if (number_ == lastNumber) {
                throw std::runtime_error("no display number is free");
            }
        }
    }

    SilentDisplay(const SilentDisplay&) = delete;
    SilentDisplay& operator=(const SilentDisplay&) = delete;
    SilentDisplay(SilentDisplay&&) = delete;
    SilentDisplay& operator=(SilentDisplay&&) = delete;

    ~SilentDisplay() { std::filesystem::remove(pathOf(number_)); }

    [[nodiscard]] std::string name() const { return ":" + std::to_string(number_); }

private:
    static constexpr int lastNumber = 2000;

    // Where clients look for it (X(7), "Display Names").
    static std::string pathOf(int number) { return "/tmp/.X11-unix/X" + std::to_string(number); }

    bool listens(int number) {
        sockaddr_un address{};
        address.sun_family = AF_UNIX;
        pathOf(number).copy(address.sun_path, sizeof address.sun_path - 1);
        return ::bind(socket_.get(), reinterpret_cast<const sockaddr*>(&address), sizeof address) == 0 &&
               ::listen(socket_.get(), 5) == 0;
    }

    FileDescriptor socket_{::socket(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0)};
    /// Far from those that servers choose.
    int number_ = 1000;
};

/// Ends that are asked for while the program starts or ends, on a server of its own; with a session bus or
/// without one.
class EarlyEnd : public ::testing::TestWithParam<bool> {
protected:
    void SetUp() override {
        if (GetParam()) {
            bus_ = std::make_unique<SessionBus>();
            tarvex_.setVariable("DBUS_SESSION_BUS_ADDRESS", bus_->address());
        }
    }

    /// Starts it and waits until it is past what the system does to load it.
    void launch() {
        std::filesystem::remove_all(runtimeFolder());
        std::filesystem::create_directory(runtimeFolder());
        std::filesystem::permissions(runtimeFolder(), std::filesystem::perms::owner_all);
        tarvex_.launch();
        const Deadline deadline;
        while (!handlesSignals() && std::filesystem::is_empty(runtimeFolder()) && !deadline.hasPassed()) {
            std::this_thread::yield();
        }
        ASSERT_FALSE(deadline.hasPassed()) << tarvex_.standardError();
    }

    [[nodiscard]] std::filesystem::path runtimeFolder() const {
        return tarvex_.command({}).environment.at("XDG_RUNTIME_DIR");
    }

    /// Whether it has a handler of its own for SIGTERM.
    [[nodiscard]] bool handlesSignals() {
        std::ifstream status("/proc/" + std::to_string(tarvex_.process().pid()) + "/status");
        for (std::string word; status >> word;) {
            if (word == "SigCgt:") {
                unsigned long long caught = 0;
                status >> std::hex >> caught;
                return (caught >> (SIGTERM - 1) & 1U) != 0;
            }
        }
        return false;
    }

    /// From there until it is ready.
    std::chrono::milliseconds durationOfAStart() {
        launch();
        const auto begin = std::chrono::steady_clock::now();
        tarvex_.awaitOnStandardError("event tap installed");
        const auto duration = std::chrono::steady_clock::now() - begin;
        tarvex_.expectCleanExit();
        return std::chrono::ceil<std::chrono::milliseconds>(duration);
    }

    XServer server_;
    TarvexProgram tarvex_{server_, TARVEX_PROGRAM};
    std::unique_ptr<SessionBus> bus_;
};

INSTANTIATE_TEST_SUITE_P(Sessions, EarlyEnd, ::testing::Bool(),
                         [](const auto& info) { return info.param ? "bus" : "noBus"; });

TEST_P(EarlyEnd, IsCleanAtEveryMomentOfAStart) {
    constexpr int moments = 40;
    const std::chrono::milliseconds whole = durationOfAStart();
    for (int moment = 0; moment < moments; ++moment) {
        launch();
        const Deadline patience(whole * moment / (moments - 8));
        ASSERT_EQ(tarvex_.process().waitForExit(patience), std::nullopt) << tarvex_.standardError();
        tarvex_.process().signal(SIGTERM);
        EXPECT_EQ(tarvex_.process().waitForExit(), success) << "at moment " << moment;
    }
}

TEST_P(EarlyEnd, IsCleanWhileTheXServerDoesNotAnswer) {
    const SilentDisplay silent;
    tarvex_.setVariable("DISPLAY", silent.name());
    for (const int number : {SIGTERM, SIGINT, SIGHUP}) {
        launch();
        const Deadline patience(std::chrono::milliseconds(200));
        ASSERT_EQ(tarvex_.process().waitForExit(patience), std::nullopt) << tarvex_.standardError();
        tarvex_.process().signal(number);
        EXPECT_EQ(tarvex_.process().waitForExit(), success) << number;
    }
}

TEST_P(EarlyEnd, IsCleanHoweverOftenItIsAskedFor) {
    for (int round = 0; round < 5; ++round) {
        tarvex_.start();
        const Deadline deadline;
        while (tarvex_.process().isRunning() && !deadline.hasPassed()) {
            tarvex_.process().signal(SIGTERM);
            tarvex_.process().signal(SIGINT);
        }
        EXPECT_EQ(tarvex_.process().waitForExit(), success);
    }
}

} // namespace
} // namespace tarvex::test
