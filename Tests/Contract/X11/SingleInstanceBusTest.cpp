#include "Tests/Contract/X11/SingleInstanceFixture.h"
#include "Tests/Support/X11/SilentSocket.h"

namespace tarvex::contract {

namespace {

/// The session bus is missing, silent, or goes.
class SingleInstanceBusTest : public SingleInstanceTest {};

TEST_F(SingleInstanceBusTest, LossOfTheBusDoesNoHarm) {
    startFirst();
    bus_.end();
    const auto hasNoticed = [this] { return !BusConnection(options_.busAddress).get().isConnected(); };
    EXPECT_TRUE(application_.waitUntil(hasNoticed));
    application_.settle();
    // With the bus gone, the next start has the lock to go by.
    EXPECT_EQ(SingleInstance::acquire(noRequest, options_).message, alreadyRunning);
    first_.reset();
    EXPECT_NE(SingleInstance::acquire(noRequest, options_).instance, nullptr);
    EXPECT_TRUE(requests_.empty());
}

TEST_F(SingleInstanceBusTest, OneWithAndOneWithoutTheBusAreNeverTwo) {
    SingleInstance::Options withoutBus = options_;
    withoutBus.busAddress.clear();
    for (const auto& [first, second] : {std::pair(options_, withoutBus), std::pair(withoutBus, options_)}) {
        const SingleInstance::Outcome outcome = SingleInstance::acquire(noRequest, first);
        ASSERT_NE(outcome.instance, nullptr);
        const SingleInstance::Outcome other = SingleInstance::acquire(noRequest, second);
        EXPECT_EQ(other.instance, nullptr);
        EXPECT_EQ(other.exitCode, 1);
        EXPECT_EQ(other.message, alreadyRunning);
    }
}

TEST_F(SingleInstanceBusTest, BusThatNeverAnswersCountsAsNone) {
    test::SilentSocket silent;
    test::SilentSocket full;
    full.fillTheLine();
    bus_.freeze();
    options_.busPatience = std::chrono::milliseconds(100);
    for (const std::string& address : {silent.busAddress(), full.busAddress(), bus_.address()}) {
        options_.busAddress = address;
        const test::Deadline deadline(std::chrono::seconds(10));
        SingleInstance::Outcome outcome = SingleInstance::acquire(noRequest, options_);
        ASSERT_NE(outcome.instance, nullptr) << address;
        EXPECT_EQ(outcome.busAddress, "");
        EXPECT_EQ(outcome.message, "");
        EXPECT_EQ(SingleInstance::acquire(openPreferences, options_).message, alreadyRunning);
        EXPECT_EQ(SingleInstance::acquire(quitRequest, options_).message, alreadyRunning);
        EXPECT_FALSE(deadline.hasPassed());
    }
}

TEST_F(SingleInstanceBusTest, BusThatStopsUnderTheInstanceHoldsNobodyUp) {
    options_.busPatience = std::chrono::milliseconds(100);
    startFirst();
    bus_.freeze();
    const test::Deadline deadline(std::chrono::seconds(10));
    EXPECT_EQ(SingleInstance::acquire(noRequest, options_).message, alreadyRunning);
    application_.settle();
    first_.reset();
    EXPECT_NE(SingleInstance::acquire(noRequest, options_).instance, nullptr);
    EXPECT_FALSE(deadline.hasPassed());
}

TEST_F(SingleInstanceBusTest, OutcomeNamesTheBusThatAnswers) {
    EXPECT_EQ(SingleInstance::acquire(noRequest, options_).busAddress, bus_.address());
    options_.busAddress.clear();
    EXPECT_EQ(SingleInstance::acquire(noRequest, options_).busAddress, "");
}

TEST_F(SingleInstanceBusTest, WithoutABusTheLockKeepsTheSecondOut) {
    for (const char* address : {"", "unix:path=/nonexistent/socket", "disabled:", "nonsense"}) {
        options_.busAddress = address;
        SingleInstance::Outcome outcome = SingleInstance::acquire(noRequest, options_);
        ASSERT_NE(outcome.instance, nullptr) << address;
        EXPECT_EQ(outcome.message, "");
        for (const InstanceRequest& request : {noRequest, openEditor(1), quitRequest}) {
            const SingleInstance::Outcome second = SingleInstance::acquire(request, options_);
            EXPECT_EQ(second.instance, nullptr);
            EXPECT_EQ(second.exitCode, 1);
            EXPECT_EQ(second.message, alreadyRunning);
        }
        outcome.instance.reset();
        EXPECT_NE(SingleInstance::acquire(noRequest, options_).instance, nullptr) << address;
    }
}

TEST_F(SingleInstanceBusTest, WithoutAPlaceForTheLockTheProgramRuns) {
    options_.busAddress.clear();
    options_.lockFolder = {scratch_.path() / "missing", false};
    const SingleInstance::Outcome outcome = SingleInstance::acquire(noRequest, options_);
    EXPECT_NE(outcome.instance, nullptr);
    EXPECT_EQ(outcome.message, "tarvex: cannot lock " + options_.lockFolder.path +
                                   "/tarvex.lock; a second instance would not be noticed\n");
}

} // namespace

} // namespace tarvex::contract
