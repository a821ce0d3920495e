#include "Platform/Linux/Qt/QtSignals.h"
#include "Tests/Contract/X11/MainLoopApplication.h"

#include <gtest/gtest.h>

#include <csignal>
#include <cstdlib>
#include <pthread.h>
#include <thread>
#include <unistd.h>

namespace tarvex::contract {

namespace {

bool hasDefaultHandling(int signal) {
    struct sigaction current {};

    sigaction(signal, nullptr, &current);
    return current.sa_handler == SIG_DFL;
}

class MainLoopSignals : public ::testing::TestWithParam<int> {
protected:
    MainLoopApplication application_;
};

TEST_P(MainLoopSignals, SignalCallsTerminateOnTheLoop) {
    int calls = 0;
    const QtSignals endSignals([&calls] { ++calls; });
    raise(GetParam());
    EXPECT_EQ(calls, 0);
    EXPECT_TRUE(application_.waitUntil([&] { return calls == 1; }));
    application_.settle();
    EXPECT_EQ(calls, 1);
}

TEST_P(MainLoopSignals, SignalThatComesBeforeTheLoopRunsIsKept) {
    int calls = 0;
    const QtSignals endSignals([&calls] { ++calls; });
    raise(GetParam());
    application_.settle();
    EXPECT_EQ(calls, 1);
}

TEST_P(MainLoopSignals, SignalDuringTheStartEndsTheProgramWell) {
    const auto start = [] {
        QtSignals::endAtOnce();
        raise(GetParam());
        std::_Exit(1);
    };
    EXPECT_EXIT(start(), ::testing::ExitedWithCode(0), "");
}

TEST_P(MainLoopSignals, SignalThatAnotherThreadTakesEndsTheProgramWell) {
    const auto start = [] {
        QtSignals::endAtOnce();
        std::thread([] { pthread_kill(pthread_self(), GetParam()); }).join();
        std::_Exit(1);
    };
    EXPECT_EXIT(start(), ::testing::ExitedWithCode(0), "");
}

TEST_P(MainLoopSignals, SignalDuringTheEndEndsTheProgramWell) {
    const auto end = [] {
        QtSignals::endAtOnce();
        {
            const QtSignals endSignals([] {});
        }
        raise(GetParam());
        std::_Exit(1);
    };
    EXPECT_EXIT(end(), ::testing::ExitedWithCode(0), "");
}

TEST_P(MainLoopSignals, AskingTwiceAsksOnce) {
    int calls = 0;
    const QtSignals endSignals([&calls] { ++calls; });
    raise(GetParam());
    raise(GetParam());
    EXPECT_TRUE(application_.waitUntil([&] { return calls > 0; }));
    raise(GetParam());
    application_.settle();
    EXPECT_EQ(calls, 1);
}

TEST_P(MainLoopSignals, ProgramThatIsStuckIsEndedByTheSystem) {
    EXPECT_TRUE(hasDefaultHandling(SIGALRM));
    {
        const QtSignals endSignals([] {});
        EXPECT_EQ(alarm(0), 0U);
        raise(GetParam());
        const unsigned left = alarm(1000);
        EXPECT_GE(left, 9U);
        EXPECT_LE(left, 10U);
        raise(GetParam());
        EXPECT_GT(alarm(1000), 900U) << "the second signal has set the clock back";
    }
    EXPECT_EQ(alarm(0), 0U) << "the clock goes on after a clean end";
}

TEST_P(MainLoopSignals, FormerHandlingComesBack) {
    ASSERT_TRUE(hasDefaultHandling(GetParam()));
    {
        const QtSignals endSignals([] {});
        EXPECT_FALSE(hasDefaultHandling(GetParam()));
    }
    EXPECT_TRUE(hasDefaultHandling(GetParam()));
}

TEST_P(MainLoopSignals, SignalEndsARunningLoopCleanly) {
    const QtSignals endSignals([] { QCoreApplication::quit(); });
    QTimer::singleShot(0, [] { raise(GetParam()); });
    EXPECT_EQ(QCoreApplication::exec(), 0);
}

INSTANTIATE_TEST_SUITE_P(Of, MainLoopSignals, ::testing::Values(SIGTERM, SIGINT, SIGHUP),
                         [](const auto& info) {
                             return info.param == SIGTERM  ? "Terminate"
                                    : info.param == SIGINT ? "Interrupt"
                                                           : "HangUp";
                         });

} // namespace

} // namespace tarvex::contract
