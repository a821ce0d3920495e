#include "Platform/Linux/Qt/QtSignals.h"

#include <array>
#include <atomic>
#include <cerrno>
#include <cstdlib>
#include <fcntl.h>
#include <unistd.h>
#include <utility>

namespace tarvex {

namespace {

/// All that a signal handler can reach. Negative while nobody listens.
std::atomic<int> signalPipe{-1};
std::atomic<bool> isEndUnderWay{false};
static_assert(std::atomic<int>::is_always_lock_free && std::atomic<bool>::is_always_lock_free);

constexpr unsigned patienceInSeconds = 10;

void noteSignal(int number) {
    const int formerError = errno;
    if (!isEndUnderWay.exchange(true)) {
        // Nobody handles SIGALRM, which then ends the process.
        ::alarm(patienceInSeconds);
    }
    const auto byte = static_cast<unsigned char>(number);
    // A full pipe holds a signal already.
    [[maybe_unused]] const ssize_t written = ::write(signalPipe.load(), &byte, 1);
    errno = formerError;
}

struct sigaction actionOf(void (*handler)(int)) {
    struct sigaction action {};

    action.sa_handler = handler;
    action.sa_flags = SA_RESTART;
    sigemptyset(&action.sa_mask);
    return action;
}

} // namespace

void QtSignals::endAtOnce() {
    const struct sigaction action = actionOf([](int) { std::_Exit(0); });
    for (const int number : handledSignals) {
        sigaction(number, &action, nullptr);
    }
}

QtSignals::QtSignals(std::function<void()> terminate) : terminate_(std::move(terminate)) {
    std::array<int, 2> ends{-1, -1};
    if (::pipe2(ends.data(), O_CLOEXEC | O_NONBLOCK) != 0) {
        // The signals are then handled as before.
        return;
    }
    readEnd_ = FileDescriptor(ends[0]);
    writeEnd_ = FileDescriptor(ends[1]);
    notifier_ = std::make_unique<QSocketNotifier>(readEnd_.get(), QSocketNotifier::Read);
    QObject::connect(notifier_.get(), &QSocketNotifier::activated, notifier_.get(),
                     [this] { readSignals(); });
    signalPipe = writeEnd_.get();
    const struct sigaction action = actionOf(noteSignal);
    for (std::size_t index = 0; index < handledSignals.size(); ++index) {
        sigaction(handledSignals[index], &action, &former_[index]);
    }
}

QtSignals::~QtSignals() {
    if (!notifier_) {
        return;
    }
    for (std::size_t index = 0; index < handledSignals.size(); ++index) {
        sigaction(handledSignals[index], &former_[index], nullptr);
    }
    signalPipe = -1;
    if (isEndUnderWay.exchange(false)) {
        ::alarm(0);
    }
}

void QtSignals::readSignals() {
    std::array<unsigned char, 16> bytes{};
    bool isAsked = false;
    while (::read(readEnd_.get(), bytes.data(), bytes.size()) > 0) {
        isAsked = true;
    }
    if (isAsked && !std::exchange(hasAsked_, true)) {
        terminate_();
    }
}

} // namespace tarvex
