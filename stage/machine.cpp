#include "stage/machine.h"

#include <atomic>
#include <csignal>
#include <cstdlib>
#include <filesystem>
#include <system_error>
#include <utility>

#include <dlfcn.h>
#include <unistd.h>

namespace Stage {

namespace {

std::atomic<int> stopRequests{0};
static_assert(std::atomic<int>::is_always_lock_free, "a signal handler changes it");

void countStopRequest(int signal) {
    if (stopRequests.fetch_add(1) > 0) {
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

std::string ownProgramPath() {
    std::error_code error;
    return std::filesystem::read_symlink("/proc/self/exe", error).string();
}

SharedLibrary::SharedLibrary(SharedLibrary&& other) noexcept
    : handle_(std::exchange(other.handle_, nullptr)) {}

SharedLibrary& SharedLibrary::operator=(SharedLibrary&& other) noexcept {
    std::swap(handle_, other.handle_);
    return *this;
}

bool SharedLibrary::load(const std::string& path, std::string& error) {
    free();
    handle_ = dlopen(path.c_str(), RTLD_NOW | RTLD_LOCAL);
    if (handle_ == nullptr) {
        const char* words = dlerror();
        error = words != nullptr ? words : path + " can't be loaded";
    }
    return handle_ != nullptr;
}

void SharedLibrary::free() {
    if (handle_ != nullptr) {
        dlclose(handle_);
        handle_ = nullptr;
    }
}

void* SharedLibrary::findAddress(const char* name) const {
    return handle_ != nullptr ? dlsym(handle_, name) : nullptr;
}

void catchStopRequests() {
    std::signal(SIGINT, countStopRequest);
    std::signal(SIGTERM, countStopRequest);
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
