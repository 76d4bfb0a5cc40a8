#pragma once

#include <gtest/gtest.h>

#include <csignal>
#include <sys/resource.h>

namespace MVR::Testing {

/// Simulates a full disk: while this object lives no file grows beyond so many bytes.
class FullDisk {
public:
    explicit FullDisk(rlim_t bytes) {
        EXPECT_EQ(getrlimit(RLIMIT_FSIZE, &before_), 0);
        const rlimit full{bytes, before_.rlim_max};
        EXPECT_EQ(setrlimit(RLIMIT_FSIZE, &full), 0);
    }
    ~FullDisk() {
        setrlimit(RLIMIT_FSIZE, &before_);
        std::signal(SIGXFSZ, handler_);
    }

private:
    sighandler_t handler_ = std::signal(SIGXFSZ, SIG_IGN);
    rlimit before_{};
};

} // namespace MVR::Testing
