// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <csignal>
#include <sys/resource.h>

namespace plovik::test {

/// Makes writing fail as on a full disk once a file has `size` bytes.
class FullDisk {
public:
    explicit FullDisk(rlim_t size) : previousHandler_(std::signal(SIGXFSZ, SIG_IGN))
    {
        ::getrlimit(RLIMIT_FSIZE, &previous_);
        const rlimit small{size, previous_.rlim_max};
        ::setrlimit(RLIMIT_FSIZE, &small);
    }
    ~FullDisk()
    {
        ::setrlimit(RLIMIT_FSIZE, &previous_);
        std::signal(SIGXFSZ, previousHandler_);
    }
    FullDisk(const FullDisk&) = delete;
    FullDisk& operator=(const FullDisk&) = delete;

private:
    rlimit previous_{};
    void (*previousHandler_)(int);
};

} // namespace plovik::test
