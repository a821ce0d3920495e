#pragma once

#include "Platform/Linux/InstanceLock.h"
#include "Platform/Linux/InstanceRequest.h"

#include <chrono>
#include <functional>
#include <memory>
#include <string>

namespace tarvex {

class InstanceService;

/// Being the one instance of the program in this session, which is that of an X display: one user may have
/// several on one bus. With a session bus that is the owner of the name that InstanceService::nameIn() gives,
/// such as "org.tarvex.Tarvex.Display_3a0", which serves the interface org.freedesktop.Application of the
/// Desktop Entry Specification: Activate, and the actions "open-editor" (an optional display number, uint32),
/// "open-preferences" and "quit". With or without a bus it holds a lock, so that one that reaches the bus and
/// one that does not are never two. The loss of the bus does the instance no harm. Main thread only.
class SingleInstance {
public:
    using RequestHandler = std::function<void(const InstanceRequest&)>;

    struct Options {
        /// As SessionBusAddress::find() gives it; empty for none.
        std::string busAddress;
        /// Where the lock is, and the session.
        InstanceLock::Folder lockFolder;
        /// How long the instance that runs has for its answer.
        std::chrono::milliseconds patience{5000};
        /// How long the bus has for each of its own. One that stays silent counts as none.
        std::chrono::milliseconds busPatience{2000};

        /// What holds for this process.
        [[nodiscard]] static Options standard();
    };

    /// What came of a start.
    struct Outcome {
        /// Present when this process is the instance and goes on.
        std::unique_ptr<SingleInstance> instance;
        /// Without an instance: the code to exit with, 0 when the request was handed over or is fulfilled.
        int exitCode = 0;
        /// The address of the bus, if there is one that answers.
        std::string busAddress = {};
        /// For standard error, ending in a line feed; empty for nothing to say. May come with an instance.
        std::string message;
    };

    /// Becomes the instance, or hands the request to the one that runs: "none" opens its preferences. A
    /// request to quit never becomes the instance. Waits for the answers, so call it before the main loop
    /// runs; an application object need not exist yet.
    [[nodiscard]] static Outcome acquire(const InstanceRequest& request,
                                         const Options& options = Options::standard());

    SingleInstance(const SingleInstance&) = delete;
    SingleInstance& operator=(const SingleInstance&) = delete;
    SingleInstance(SingleInstance&&) = delete;
    SingleInstance& operator=(SingleInstance&&) = delete;
    /// Gives the name or the lock up.
    ~SingleInstance();

    /// Calls the handler on the main loop for every request that another start hands over, those before this
    /// call included. The handler may destroy this object.
    void setRequestHandler(RequestHandler handler);

private:
    SingleInstance(std::unique_ptr<InstanceService> service, InstanceLock lock);

    [[nodiscard]] static Outcome acquireOnBus(const InstanceRequest& request, const Options& options,
                                              std::unique_ptr<InstanceService> service);
    [[nodiscard]] static Outcome acquireLock(const InstanceRequest& request,
                                             const InstanceLock::Folder& folder,
                                             std::unique_ptr<InstanceService> service);

    std::unique_ptr<InstanceService> service_;
    InstanceLock lock_;
};

} // namespace tarvex
