#include "stage/base/machine.h"

#include <atomic>
#include <csignal>
#include <cstdlib>
#include <utility>

#include <unistd.h>

namespace Stage {

namespace {

std::atomic<int> stopRequests{0};
static_assert(std::atomic<int>::is_always_lock_free, "a signal handler changes it");

void countStopRequest(int signal) {
    // A terminal that closes sends its signal twice, by way of the shell.
    if (stopRequests.fetch_add(1) > 0 && signal != SIGHUP) {
        std::signal(signal, SIG_DFL);
        std::raise(signal);
        return;
    }
    std::signal(signal, countStopRequest);
}

} // namespace

bool isTerminal(int stream) {
    return isatty(stream) != 0;
}

bool SharedLibrary::load(const std::string& path, std::string& error) {
    free();
    handle_ = MVR::Platform::loadLibrary(path);
    if (handle_ == nullptr)
        error = MVR::Platform::lastLibraryError();
    return handle_ != nullptr;
}

void SharedLibrary::free() {
    MVR::Platform::freeLibrary(std::exchange(handle_, nullptr));
}

void catchStopRequests() {
    std::signal(SIGINT, countStopRequest);
    std::signal(SIGTERM, countStopRequest);
    if (std::signal(SIGHUP, countStopRequest) == SIG_IGN) // as nohup wants it
        std::signal(SIGHUP, SIG_IGN);
}

bool isStopRequested() {
    return stopRequests.load() > 0;
}

void setEnvironment(const char* name, const std::string& value) {
    setenv(name, value.c_str(), 1);
}

long processNumber() {
    return getpid();
}

} // namespace Stage
