// Keeps other processes out of a folder while one of its files is read, changed and written back.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>

namespace MVR::Platform {

/// The right to change the files of a folder, for as long as the object lives. It binds those who
/// ask for it: this system in other processes, and other objects of this one. Readers need no lock,
/// since files are replaced as a whole. The lock ends with the process, however that ends.
///
/// Stands for opening the file ".mvr-lock" in the folder exclusively. The file stays in the folder.
class FolderLock {
public:
    /// Nobody holds a lock for longer than it takes to write a few files.
    static constexpr std::uint32_t kLongestWaitMs = 2000;

    /// Waits up to `kLongestWaitMs` for the others.
    explicit FolderLock(std::string_view folder);
    ~FolderLock();
    FolderLock(const FolderLock&) = delete;
    FolderLock& operator=(const FolderLock&) = delete;

    /// Returns false if the folder is missing, can't be written to, or is locked by somebody else.
    [[nodiscard]] bool isHeld() const { return handle_ >= 0; }
    /// Returns the system's words for why the lock isn't held; "" if it is.
    [[nodiscard]] const std::string& getReason() const { return reason_; }

private:
    std::intptr_t handle_ = -1; // of the open file
    std::string reason_;
};

} // namespace MVR::Platform
