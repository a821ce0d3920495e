#include "Platform/Linux/SingleInstance.h"

#include "Platform/Linux/Qt/BusConnection.h"
#include "Tests/Contract/X11/MainLoopApplication.h"
#include "Tests/Support/X11/SessionBus.h"
#include "Tests/Support/X11/SilentSocket.h"

#include <QDBusMessage>
#include <QDBusPendingCall>
#include <QDBusPendingCallWatcher>
#include <gtest/gtest.h>

#include <atomic>
#include <barrier>
#include <thread>

namespace tarvex::contract {

namespace {

constexpr const char* alreadyRunning =
    "tarvex: already running, but not to be reached over the session bus\n";
const InstanceRequest noRequest{};
const InstanceRequest openPreferences{InstanceRequestKind::openPreferences, std::nullopt};
const InstanceRequest quitRequest{InstanceRequestKind::quit, std::nullopt};

InstanceRequest openEditor(std::optional<std::uint32_t> display = std::nullopt) {
    return {InstanceRequestKind::openEditor, display};
}

/// A first instance on a private bus, and further starts beside its main loop.
class SingleInstanceTest : public ::testing::Test {
protected:
    void SetUp() override {
        options_.busAddress = bus_.address();
        options_.lockFolder = {scratch_.folder("runtime").string(), false};
    }

    void startFirst() {
        SingleInstance::Outcome outcome = SingleInstance::acquire(noRequest, options_);
        ASSERT_NE(outcome.instance, nullptr) << outcome.message;
        EXPECT_EQ(outcome.message, "");
        first_ = std::move(outcome.instance);
        first_->setRequestHandler([this](const InstanceRequest& request) {
            requests_.push_back(request);
            onRequest_();
        });
    }

    /// A further start, as another process makes it, while the first one's main loop runs.
    SingleInstance::Outcome startBeside(const InstanceRequest& request) {
        SingleInstance::Outcome outcome;
        std::atomic<bool> isDone = false;
        std::thread other([&] {
            outcome = SingleInstance::acquire(request, options_);
            isDone = true;
        });
        EXPECT_TRUE(application_.waitUntil([&] { return isDone.load(); }));
        other.join();
        return outcome;
    }

    /// Calls the first instance as a desktop does, and gives its answer.
    QDBusMessage call(const char* method, const QVariantList& arguments) {
        BusConnection caller(bus_.address());
        QDBusMessage message = QDBusMessage::createMethodCall("org.tarvex.Tarvex", "/org/tarvex/Tarvex",
                                                              "org.freedesktop.Application", method);
        message.setArguments(arguments);
        const QDBusPendingCallWatcher watcher(caller.get().asyncCall(message));
        EXPECT_TRUE(application_.waitUntil([&] { return watcher.isFinished(); }));
        return watcher.reply();
    }

    MainLoopApplication application_;
    test::SessionBus bus_;
    test::ScratchDirectory scratch_;
    SingleInstance::Options options_;
    std::unique_ptr<SingleInstance> first_;
    std::vector<InstanceRequest> requests_;
    std::function<void()> onRequest_ = [] {};
};

TEST_F(SingleInstanceTest, SecondStartHandsItsRequestOver) {
    startFirst();
    const std::vector<InstanceRequest> asked{noRequest,     openPreferences,         openEditor(),
                                             openEditor(0), openEditor(4294967295U), quitRequest};
    for (const InstanceRequest& request : asked) {
        const SingleInstance::Outcome outcome = startBeside(request);
        EXPECT_EQ(outcome.instance, nullptr);
        EXPECT_EQ(outcome.exitCode, 0);
        EXPECT_EQ(outcome.message, "");
    }
    EXPECT_TRUE(application_.waitUntil([&] { return requests_.size() == asked.size(); }));
    std::vector<InstanceRequest> expected = asked;
    expected.front() = openPreferences;
    EXPECT_EQ(requests_, expected);
}

TEST_F(SingleInstanceTest, NextStartIsTheInstanceOnceTheFirstIsGone) {
    startFirst();
    first_.reset();
    const SingleInstance::Outcome next = SingleInstance::acquire(openEditor(), options_);
    EXPECT_NE(next.instance, nullptr);
    EXPECT_TRUE(requests_.empty());
}

TEST_F(SingleInstanceTest, QuitWithNobodyRunningStartsNothing) {
    for (const std::string& address : {bus_.address(), std::string()}) {
        options_.busAddress = address;
        const SingleInstance::Outcome outcome = SingleInstance::acquire(quitRequest, options_);
        EXPECT_EQ(outcome.instance, nullptr);
        EXPECT_EQ(outcome.exitCode, 0);
        EXPECT_EQ(outcome.message, "tarvex: not running\n");
        EXPECT_NE(SingleInstance::acquire(noRequest, options_).instance, nullptr);
    }
}

TEST_F(SingleInstanceTest, InstanceThatHangsIsNotWaitedForForLong) {
    startFirst();
    options_.patience = std::chrono::milliseconds(200);
    // Without a turn of the first one's loop.
    const SingleInstance::Outcome outcome = SingleInstance::acquire(openEditor(), options_);
    EXPECT_EQ(outcome.instance, nullptr);
    EXPECT_EQ(outcome.exitCode, 1);
    EXPECT_EQ(outcome.message, "tarvex: already running, but it does not answer\n");
    const SingleInstance::Outcome quit = SingleInstance::acquire(quitRequest, options_);
    EXPECT_EQ(quit.exitCode, 1);
}

TEST_F(SingleInstanceTest, RequestsBeforeTheHandlerAreKept) {
    SingleInstance::Outcome outcome = SingleInstance::acquire(noRequest, options_);
    ASSERT_NE(outcome.instance, nullptr);
    EXPECT_EQ(startBeside(openEditor(3)).exitCode, 0);
    EXPECT_EQ(startBeside(openPreferences).exitCode, 0);
    application_.settle();
    outcome.instance->setRequestHandler(
        [this](const InstanceRequest& request) { requests_.push_back(request); });
    EXPECT_TRUE(requests_.empty());
    EXPECT_TRUE(application_.waitUntil([&] { return requests_.size() == 2; }));
    EXPECT_EQ(requests_, (std::vector<InstanceRequest>{openEditor(3), openPreferences}));
}

TEST_F(SingleInstanceTest, HandlerMayEndTheInstance) {
    startFirst();
    onRequest_ = [this] { first_.reset(); };
    EXPECT_EQ(startBeside(quitRequest).exitCode, 0);
    EXPECT_TRUE(application_.waitUntil([&] { return first_ == nullptr; }));
    EXPECT_NE(SingleInstance::acquire(noRequest, options_).instance, nullptr);
}

TEST_F(SingleInstanceTest, OfManyStartsAtOnceOneWins) {
    for (int round = 0; round < 5; ++round) {
        constexpr int starts = 6;
        std::array<SingleInstance::Outcome, starts> outcomes;
        std::array<std::thread, starts> threads;
        std::barrier gate(starts);
        options_.patience = std::chrono::milliseconds(300);
        for (std::size_t index = 0; index < starts; ++index) {
            threads[index] = std::thread([&, index] {
                gate.arrive_and_wait();
                outcomes[index] = SingleInstance::acquire(noRequest, options_);
            });
        }
        int winners = 0;
        for (std::size_t index = 0; index < starts; ++index) {
            threads[index].join();
            winners += outcomes[index].instance ? 1 : 0;
        }
        EXPECT_EQ(winners, 1);
    }
}

TEST_F(SingleInstanceTest, DesktopsMayActivateTheInstance) {
    startFirst();
    EXPECT_EQ(call("Activate", {QVariantMap()}).type(), QDBusMessage::ReplyMessage);
    EXPECT_EQ(call("ActivateAction", {"open-editor", QVariantList{QVariant(5U)}, QVariantMap()}).type(),
              QDBusMessage::ReplyMessage);
    EXPECT_EQ(
        call("ActivateAction", {"quit", QVariantList(), QVariantMap{{"desktop-startup-id", "x"}}}).type(),
        QDBusMessage::ReplyMessage);
    EXPECT_TRUE(application_.waitUntil([&] { return requests_.size() == 3; }));
    EXPECT_EQ(requests_, (std::vector<InstanceRequest>{openPreferences, openEditor(5), quitRequest}));
}

TEST_F(SingleInstanceTest, CallsThatMakeNoSenseAreRefusedAndDoNothing) {
    startFirst();
    const std::vector<std::pair<const char*, QVariantList>> calls{
        {"Activate", {}},
        {"Activate", {"text"}},
        {"Open", {QStringList{"file:///tmp/x"}, QVariantMap()}},
        {"ActivateAction", {"explode", QVariantList(), QVariantMap()}},
        {"ActivateAction", {"quit"}},
        {"ActivateAction", {"quit", QVariantList{1U}, QVariantMap()}},
        {"ActivateAction", {"open-editor", QVariantList{"left"}, QVariantMap()}},
        {"ActivateAction", {"open-editor", QVariantList{-1}, QVariantMap()}},
        {"ActivateAction", {"open-editor", QVariantList{1U, 2U}, QVariantMap()}},
        {"Nonsense", {}},
    };
    for (const auto& [method, arguments] : calls) {
        EXPECT_EQ(call(method, arguments).type(), QDBusMessage::ErrorMessage) << method;
    }
    EXPECT_EQ(call("Activate", {QVariantMap()}).type(), QDBusMessage::ReplyMessage);
    EXPECT_TRUE(application_.waitUntil([&] { return !requests_.empty(); }));
    EXPECT_EQ(requests_, std::vector<InstanceRequest>{openPreferences});
}

TEST_F(SingleInstanceTest, LossOfTheBusDoesNoHarm) {
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

TEST_F(SingleInstanceTest, OneWithAndOneWithoutTheBusAreNeverTwo) {
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

TEST_F(SingleInstanceTest, QuitTellsOfOneThatItCannotReach) {
    SingleInstance::Options withoutBus = options_;
    withoutBus.busAddress.clear();
    SingleInstance::Outcome running = SingleInstance::acquire(noRequest, withoutBus);
    ASSERT_NE(running.instance, nullptr);
    const SingleInstance::Outcome quit = SingleInstance::acquire(quitRequest, options_);
    EXPECT_EQ(quit.instance, nullptr);
    EXPECT_EQ(quit.exitCode, 1);
    EXPECT_EQ(quit.message, alreadyRunning);
    running.instance.reset();
    EXPECT_EQ(SingleInstance::acquire(quitRequest, options_).exitCode, 0);
}

TEST_F(SingleInstanceTest, AnotherSessionOfTheUserHasALockOfItsOwn) {
    options_.busAddress.clear();
    options_.lockFolder.session = ":0";
    const SingleInstance::Outcome one = SingleInstance::acquire(noRequest, options_);
    options_.lockFolder.session = ":1";
    EXPECT_NE(SingleInstance::acquire(noRequest, options_).instance, nullptr);
    EXPECT_NE(one.instance, nullptr);
}

TEST_F(SingleInstanceTest, SessionsOnOneBusHaveAnInstanceEach) {
    options_.lockFolder.session = ":0";
    startFirst();
    options_.lockFolder.session = ":1";
    SingleInstance::Outcome other = SingleInstance::acquire(noRequest, options_);
    ASSERT_NE(other.instance, nullptr) << other.message;
    std::vector<InstanceRequest> otherRequests;
    other.instance->setRequestHandler(
        [&](const InstanceRequest& request) { otherRequests.push_back(request); });
    EXPECT_EQ(startBeside(openEditor(1)).exitCode, 0);
    EXPECT_TRUE(application_.waitUntil([&] { return !otherRequests.empty(); }));
    options_.lockFolder.session = ":0";
    EXPECT_EQ(startBeside(quitRequest).exitCode, 0);
    EXPECT_TRUE(application_.waitUntil([&] { return !requests_.empty(); }));
    EXPECT_EQ(requests_, std::vector<InstanceRequest>{quitRequest});
    EXPECT_EQ(otherRequests, std::vector<InstanceRequest>{openEditor(1)});
    options_.lockFolder.session = ":2";
    EXPECT_EQ(SingleInstance::acquire(quitRequest, options_).message, "tarvex: not running\n");
}

TEST_F(SingleInstanceTest, BusThatNeverAnswersCountsAsNone) {
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

TEST_F(SingleInstanceTest, BusThatStopsUnderTheInstanceHoldsNobodyUp) {
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

TEST_F(SingleInstanceTest, OutcomeNamesTheBusThatAnswers) {
    EXPECT_EQ(SingleInstance::acquire(noRequest, options_).busAddress, bus_.address());
    options_.busAddress.clear();
    EXPECT_EQ(SingleInstance::acquire(noRequest, options_).busAddress, "");
}

TEST_F(SingleInstanceTest, WithoutABusTheLockKeepsTheSecondOut) {
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

TEST_F(SingleInstanceTest, WithoutAPlaceForTheLockTheProgramRuns) {
    options_.busAddress.clear();
    options_.lockFolder = {scratch_.path() / "missing", false};
    const SingleInstance::Outcome outcome = SingleInstance::acquire(noRequest, options_);
    EXPECT_NE(outcome.instance, nullptr);
    EXPECT_EQ(outcome.message, "tarvex: cannot lock " + options_.lockFolder.path +
                                   "/tarvex.lock; a second instance would not be noticed\n");
}

TEST(SingleInstanceEarlyTest, InstanceMayBeFoundOutBeforeThereIsAnApplication) {
    const test::SessionBus bus;
    const test::ScratchDirectory scratch;
    const SingleInstance::Options options{.busAddress = bus.address(),
                                          .lockFolder = {scratch.path().string(), false}};
    SingleInstance::Outcome first = SingleInstance::acquire(noRequest, options);
    ASSERT_NE(first.instance, nullptr);
    std::optional<SingleInstance::Outcome> second;
    std::atomic<bool> isDone = false;
    std::thread other([&] {
        second = SingleInstance::acquire(openEditor(2), options);
        isDone = true;
    });
    std::vector<InstanceRequest> requests;
    {
        MainLoopApplication application;
        first.instance->setRequestHandler(
            [&](const InstanceRequest& request) { requests.push_back(request); });
        EXPECT_TRUE(application.waitUntil([&] { return isDone && !requests.empty(); }));
    }
    other.join();
    EXPECT_EQ(second->exitCode, 0);
    EXPECT_EQ(requests, std::vector<InstanceRequest>{openEditor(2)});
}

} // namespace

} // namespace tarvex::contract
