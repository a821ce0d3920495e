#include "Platform/Linux/SingleInstance.h"

#include "Platform/Linux/Qt/BusConnection.h"
#include "Tests/Contract/X11/MainLoopApplication.h"
#include "Tests/Support/X11/SessionBus.h"

#include <QDBusMessage>
#include <QDBusPendingCall>
#include <QDBusPendingCallWatcher>
#include <gtest/gtest.h>

#include <atomic>
#include <barrier>
#include <filesystem>
#include <fstream>
#include <sys/stat.h>
#include <sys/wait.h>
#include <thread>
#include <unistd.h>

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

TEST_F(SingleInstanceTest, AnotherSessionOfTheUserHasALockOfItsOwn) {
    options_.busAddress.clear();
    options_.lockFolder.session = ":0";
    const SingleInstance::Outcome one = SingleInstance::acquire(noRequest, options_);
    options_.lockFolder.session = ":1";
    EXPECT_NE(SingleInstance::acquire(noRequest, options_).instance, nullptr);
    EXPECT_NE(one.instance, nullptr);
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

/// Runs the call in a process of its own and gives its exit code.
int inOtherProcess(const std::function<int()>& call) {
    const pid_t child = fork();
    if (child == 0) {
        _exit(call());
    }
    int status = 0;
    waitpid(child, &status, 0);
    return WIFEXITED(status) ? WEXITSTATUS(status) : -1;
}

TEST(InstanceLockTest, HoldsAcrossProcessesUntilItsOwnerEnds) {
    const test::ScratchDirectory scratch;
    const InstanceLock::Folder folder{scratch.path().string(), false};
    const auto takeOnce = [&] { return static_cast<int>(InstanceLock().take(folder)); };
    EXPECT_EQ(inOtherProcess(takeOnce), static_cast<int>(InstanceLock::Result::taken));
    {
        InstanceLock mine;
        EXPECT_EQ(mine.take(folder), InstanceLock::Result::taken);
        EXPECT_EQ(inOtherProcess(takeOnce), static_cast<int>(InstanceLock::Result::held));
    }
    EXPECT_EQ(inOtherProcess(takeOnce), static_cast<int>(InstanceLock::Result::taken));
}

TEST(InstanceLockTest, FolderIsMadeForTheUserAlone) {
    const test::ScratchDirectory scratch;
    const std::filesystem::path path = scratch.path() / "own";
    InstanceLock lock;
    EXPECT_EQ(lock.take({path.string(), true}), InstanceLock::Result::taken);
    EXPECT_EQ(std::filesystem::status(path).permissions(), std::filesystem::perms::owner_all);
    EXPECT_EQ(std::filesystem::status(path / "tarvex.lock").permissions(),
              std::filesystem::perms::owner_read | std::filesystem::perms::owner_write);
    EXPECT_EQ(InstanceLock().take({path.string(), true}), InstanceLock::Result::held);
}

TEST(InstanceLockTest, NothingOfSomebodyElsesMakingIsUsed) {
    const test::ScratchDirectory scratch;
    const auto path = [&](const char* name) { return scratch.path() / name; };
    // A folder that others may write to, a link to a folder, a file.
    std::filesystem::permissions(scratch.folder("open"), std::filesystem::perms::all);
    std::filesystem::create_directory_symlink(scratch.folder("real"), path("link"));
    std::ofstream(path("file")) << "x";
    for (const char* name : {"open", "link", "file"}) {
        EXPECT_EQ(InstanceLock().take({path(name).string(), true}), InstanceLock::Result::failed) << name;
    }
    EXPECT_EQ(InstanceLock().take({path("missing").string(), false}), InstanceLock::Result::failed);
    // In place of the lock: a link, a pipe, a folder.
    const std::filesystem::path victim = scratch.write("victim", "precious");
    std::filesystem::create_symlink(victim, scratch.folder("a") / "tarvex.lock");
    ASSERT_EQ(mkfifo((scratch.folder("b") / "tarvex.lock").c_str(), 0600), 0);
    std::filesystem::create_directory(scratch.folder("c") / "tarvex.lock");
    for (const char* name : {"a", "b", "c"}) {
        EXPECT_EQ(InstanceLock().take({path(name).string(), false}), InstanceLock::Result::failed) << name;
    }
    if (geteuid() == 0) {
        ASSERT_EQ(chown(scratch.folder("theirs").c_str(), 65534, 65534), 0);
        EXPECT_EQ(InstanceLock().take({path("theirs").string(), true}), InstanceLock::Result::failed);
    }
}

} // namespace

} // namespace tarvex::contract
