#include "App/Logging/FileLogger.h"

#include <array>
#include <chrono>
#include <ctime>
#include <exception>
#include <utility>

namespace tarvex {

namespace {

// "yyyy-MM-dd HH:mm:ss.SSS" in local time. Shares nothing between threads.
std::string formatTimestamp(std::chrono::system_clock::time_point time) {
    using namespace std::chrono;
    const auto wholeSeconds = floor<seconds>(time);
    const auto fraction = floor<milliseconds>(time - wholeSeconds);
    const std::time_t calendarTime = system_clock::to_time_t(wholeSeconds);
    std::tm local{};
    localtime_r(&calendarTime, &local);
    std::array<char, 64> text{};
    const std::size_t length = std::strftime(text.data(), text.size(), "%Y-%m-%d %H:%M:%S", &local);
    // The leading 1 keeps the zeros of the three digits after it.
    return std::string(text.data(), length) + "." + std::to_string(1000 + fraction.count()).substr(1);
}

} // namespace

FileLogger::FileLogger(std::string path) : file_(std::move(path)) {}

FileLogger& FileLogger::shared() {
    struct Owner {
        // The last lines before the end of a process are often the ones that tell why it ended.
        ~Owner() {
            try {
                logger->queue_.drain();
            } catch (const std::exception&) {
                return;
            }
        }

        const std::shared_ptr<FileLogger> logger{new FileLogger(logFilePath())};
    };

    static const Owner owner;
    return *owner.logger;
}

void FileLogger::log(const std::string& message) {
    try {
        std::string line = "[" + formatTimestamp(std::chrono::system_clock::now()) + "] " + message + "\n";
        queue_.async([weakSelf = weak_from_this(), line = std::move(line)] {
            if (const std::shared_ptr<FileLogger> self = weakSelf.lock()) {
                self->file_.append(line);
            }
        });
    } catch (const std::exception&) {
        return;
    }
}

} // namespace tarvex
