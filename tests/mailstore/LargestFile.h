#pragma once

#include <sys/resource.h>

#include <csignal>

namespace lorvane::mailstore::test {

/// While it lives, no file may be written beyond so many bytes by this process and those it starts: the disk is full for them there.
class LargestFile {
public:
    explicit LargestFile(rlim_t bytes) : handler_(std::signal(SIGXFSZ, SIG_IGN)) {
        ::getrlimit(RLIMIT_FSIZE, &before_);
        rlimit limit = before_;
        limit.rlim_cur = bytes;
        ::setrlimit(RLIMIT_FSIZE, &limit);
    }
    LargestFile(const LargestFile&) = delete;
    LargestFile& operator=(const LargestFile&) = delete;
    ~LargestFile() {
        ::setrlimit(RLIMIT_FSIZE, &before_);
        std::signal(SIGXFSZ, handler_);
    }

private:
    rlimit before_{};
    void (*handler_)(int);
};

}  // namespace lorvane::mailstore::test
