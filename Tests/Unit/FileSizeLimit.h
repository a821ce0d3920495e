#pragma once

#include <csignal>
#include <sys/resource.h>

namespace tarvex {

/// While it lives, no file of the process may grow beyond the size: writing fails with "File too large".
class FileSizeLimit {
public:
    explicit FileSizeLimit(rlim_t size) {
        getrlimit(RLIMIT_FSIZE, &old_);
        const rlimit limit{size, old_.rlim_max};
        setrlimit(RLIMIT_FSIZE, &limit);
        oldHandler_ = std::signal(SIGXFSZ, SIG_IGN);
    }

    FileSizeLimit(const FileSizeLimit&) = delete;
    FileSizeLimit& operator=(const FileSizeLimit&) = delete;
    FileSizeLimit(FileSizeLimit&&) = delete;
    FileSizeLimit& operator=(FileSizeLimit&&) = delete;

    ~FileSizeLimit() {
        setrlimit(RLIMIT_FSIZE, &old_);
        std::signal(SIGXFSZ, oldHandler_);
    }

private:
    rlimit old_{};
    void (*oldHandler_)(int) = nullptr;
};

} // namespace tarvex
