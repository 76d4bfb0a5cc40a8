#include "core/util/thread_check.h"

#ifndef NDEBUG

#include <atomic>
#include <cassert>
#include <thread>

namespace MVR::Util {

namespace {

std::atomic<std::thread::id> hostThread; // none until one is bound

} // namespace

void bindHostThread() {
    hostThread = std::this_thread::get_id();
}

void unbindHostThread() {
    hostThread = std::thread::id();
}

void checkHostThread() {
    [[maybe_unused]] const std::thread::id host = hostThread;
    assert((host == std::thread::id() || host == std::this_thread::get_id()) &&
           "called on another thread than the host's");
}

} // namespace MVR::Util

#endif
