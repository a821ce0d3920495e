#include "Benchmarks/Desktop/ProcessFigures.h"

#include <filesystem>
#include <fstream>
#include <stdexcept>
#include <string>
#include <time.h>

namespace tarvex::benchmark {

namespace {

std::filesystem::path folderOf(pid_t process) {
    return std::filesystem::path("/proc") / std::to_string(process);
}

// The number after "name:" in a file of such lines; -1 when there is none.
long fieldOf(const std::filesystem::path& path, const std::string& name) {
    std::ifstream file(path);
    for (std::string word; file >> word;) {
        if (word == name + ":") {
            long value = -1;
            file >> value;
            return value;
        }
    }
    return -1;
}

[[noreturn]] void failForMissing() {
    throw std::runtime_error("a measured process has ended");
}

} // namespace

double processorSeconds(pid_t process) {
    clockid_t clock{};
    timespec time{};
    if (::clock_getcpuclockid(process, &clock) != 0 || ::clock_gettime(clock, &time) != 0) {
        failForMissing();
    }
    return static_cast<double>(time.tv_sec) + static_cast<double>(time.tv_nsec) / 1e9;
}

long wakeUps(pid_t process) {
    long sum = 0;
    int threads = 0;
    for (const auto& thread : std::filesystem::directory_iterator(folderOf(process) / "task")) {
        // A thread that has just ended counts for nothing.
        const long count = fieldOf(thread.path() / "status", "voluntary_ctxt_switches");
        sum += count > 0 ? count : 0;
        ++threads;
    }
    if (threads == 0) {
        failForMissing();
    }
    return sum;
}

Memory memoryOf(pid_t process) {
    constexpr double kibibyte = 1024;
    const std::filesystem::path path = folderOf(process) / "smaps_rollup";
    const long resident = fieldOf(path, "Rss");
    const long proportional = fieldOf(path, "Pss");
    if (resident <= 0 || proportional <= 0) {
        failForMissing();
    }
    return {static_cast<double>(resident) * kibibyte, static_cast<double>(proportional) * kibibyte};
}

bool isAsleep(pid_t process) {
    std::ifstream file(folderOf(process) / "stat");
    std::string line;
    std::getline(file, line);
    // The name before the state stands in brackets and may hold brackets itself.
    const std::size_t bracket = line.rfind(')');
    if (bracket == std::string::npos || bracket + 2 >= line.size()) {
        failForMissing();
    }
    return line[bracket + 2] == 'S';
}

} // namespace tarvex::benchmark
