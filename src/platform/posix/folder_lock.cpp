#include "platform/folder_lock.h"

#include "platform/sdk/files.h"

#include <cerrno>
#include <chrono>
#include <fcntl.h>
#include <sys/file.h>
#include <system_error>
#include <thread>
#include <unistd.h>

namespace MVR::Platform {

namespace {

constexpr std::uint32_t kStepMs = 5; ///< between two tries
constexpr const char* kLockFile = "/.mvr-lock";

/// Returns 0 or the system's error. The lock ends with the last handle of the file, and so with a
/// process that is killed.
int lockFile(int file) {
    for (std::uint32_t waitedMs = 0;; waitedMs += kStepMs) {
        if (flock(file, LOCK_EX | LOCK_NB) == 0)
            return 0;
        if (errno == EINTR)
            continue;
        if (errno != EWOULDBLOCK || waitedMs >= FolderLock::kLongestWaitMs)
            return errno;
        std::this_thread::sleep_for(std::chrono::milliseconds(kStepMs));
    }
}

} // namespace

FolderLock::FolderLock(std::string_view folder) {
    const std::string path = foldPath(std::string(folder) + kLockFile);
    const int flags = O_CREAT | O_CLOEXEC | O_NOFOLLOW;
    int file = open(path.c_str(), flags | O_RDWR, 0666);
    if (file < 0 && errno == EACCES) // another user's, who shares the folder
        file = open(path.c_str(), flags | O_RDONLY, 0666);
    const int error = file < 0 ? errno : lockFile(file);
    if (error == 0) {
        handle_ = file;
        return;
    }
    reason_ = std::generic_category().message(error);
    if (file >= 0)
        close(file);
}

FolderLock::~FolderLock() {
    if (isHeld())
        close(static_cast<int>(handle_));
}

} // namespace MVR::Platform
