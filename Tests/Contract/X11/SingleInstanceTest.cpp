#include "Tests/Contract/X11/SingleInstanceFixture.h"

#include <barrier>

namespace tarvex::contract {

namespace {

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
