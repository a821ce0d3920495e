#pragma once

#include "Platform/Linux/Qt/BusConnection.h"
#include "Platform/Linux/SingleInstance.h"
#include "Tests/Contract/X11/MainLoopApplication.h"
#include "Tests/Support/X11/ScratchDirectory.h"
#include "Tests/Support/X11/SessionBus.h"

#include <QDBusMessage>
#include <QDBusPendingCall>
#include <QDBusPendingCallWatcher>
#include <gtest/gtest.h>

#include <atomic>
#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <thread>
#include <utility>
#include <vector>

namespace tarvex::contract {

inline constexpr const char* alreadyRunning =
    "tarvex: already running, but not to be reached over the session bus\n";
inline const InstanceRequest noRequest{};
inline const InstanceRequest openPreferences{InstanceRequestKind::openPreferences, std::nullopt};
inline const InstanceRequest quitRequest{InstanceRequestKind::quit, std::nullopt};

inline InstanceRequest openEditor(std::optional<std::uint32_t> display = std::nullopt) {
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

} // namespace tarvex::contract
