#include "Platform/Linux/SingleInstance.h"

#include "Platform/Linux/Qt/InstanceService.h"
#include "Platform/Linux/SessionBusAddress.h"

#include <utility>

namespace tarvex {

namespace {

// An instance may end between the moment that it has the name and the moment that it is asked.
constexpr int attempts = 3;

constexpr const char* notRunning = "tarvex: not running\n";
constexpr const char* noAnswer = "tarvex: already running, but it does not answer\n";
constexpr const char* alreadyRunning =
    "tarvex: already running, but not to be reached over the session bus\n";

bool isQuit(const InstanceRequest& request) {
    return request.kind == InstanceRequestKind::quit;
}

} // namespace

SingleInstance::Options SingleInstance::Options::standard() {
    return {.busAddress = SessionBusAddress::find(), .lockFolder = InstanceLock::standardFolder()};
}

SingleInstance::SingleInstance(std::unique_ptr<InstanceService> service, InstanceLock lock)
    : service_(std::move(service)), lock_(std::move(lock)) {}

SingleInstance::~SingleInstance() = default;

SingleInstance::Outcome SingleInstance::acquire(const InstanceRequest& request, const Options& options) {
    auto service =
        options.busAddress.empty()
            ? nullptr
            : std::make_unique<InstanceService>(
                  options.busAddress, options.lockFolder.session,
                  InstanceService::Patience{.bus = options.busPatience, .instance = options.patience});
    if (!service || !service->isConnected()) {
        return acquireLock(request, options.lockFolder, nullptr);
    }
    Outcome outcome = acquireOnBus(request, options, std::move(service));
    outcome.busAddress = options.busAddress;
    return outcome;
}

SingleInstance::Outcome SingleInstance::acquireOnBus(const InstanceRequest& request, const Options& options,
                                                     std::unique_ptr<InstanceService> service) {
    for (int attempt = 0; attempt < attempts; ++attempt) {
        if (!isQuit(request) && service->takeName()) {
            return acquireLock(request, options.lockFolder, std::move(service));
        }
        switch (service->handOver(request)) {
        case InstanceService::Answer::accepted:
            return {};
        case InstanceService::Answer::none:
            return {.instance = nullptr, .exitCode = 1, .message = noAnswer};
        case InstanceService::Answer::nobody:
            if (isQuit(request)) {
                // One that runs may be on no bus, or on another one.
                return acquireLock(request, options.lockFolder, nullptr);
            }
            break;
        }
    }
    return {.instance = nullptr, .exitCode = 1, .message = noAnswer};
}

SingleInstance::Outcome SingleInstance::acquireLock(const InstanceRequest& request,
                                                    const InstanceLock::Folder& folder,
                                                    std::unique_ptr<InstanceService> service) {
    InstanceLock lock;
    const auto become = [&](std::string message) -> Outcome {
        return {.instance =
                    std::unique_ptr<SingleInstance>(new SingleInstance(std::move(service), std::move(lock))),
                .exitCode = 0,
                .message = std::move(message)};
    };
    switch (lock.take(folder)) {
    case InstanceLock::Result::held:
        return {.instance = nullptr, .exitCode = 1, .message = alreadyRunning};
    case InstanceLock::Result::failed:
        if (!isQuit(request)) {
            // Better two instances than none because of a folder that somebody broke. On the bus one that
            // comes later is noticed all the same.
            return become(service ? ""
                                  : "tarvex: cannot lock " + InstanceLock::pathIn(folder) +
                                        "; a second instance would not be noticed\n");
        }
        break;
    case InstanceLock::Result::taken:
        if (!isQuit(request)) {
            return become("");
        }
        break;
    }
    return {.instance = nullptr, .exitCode = 0, .message = notRunning};
}

void SingleInstance::setRequestHandler(RequestHandler handler) {
    if (service_) {
        service_->setRequestHandler(std::move(handler));
    }
}

} // namespace tarvex
