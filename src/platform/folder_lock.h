/// \file
/// Keeps other processes out of a folder while one of its files is read, changed and written back.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>

namespace MVR::Platform {

/// The one who may change the files of a folder, for as long as it lives. It binds those who ask
/// for it: this system in other processes, and other objects of this one. Readers need none, since
/// files are written as a whole. A process that ends, however it does, gives it up.
///
/// It stands for the exclusive opening of the file ".mvr-lock" in the folder, which stays behind.
class FolderLock {
public:
    /// Nobody holds one for longer than it takes to write a few files.
    static constexpr std::uint32_t kLongestWaitMs = 2000;

    /// Waits for the others, up to `kLongestWaitMs`.
    explicit FolderLock(std::string_view folder);
    ~FolderLock();
    FolderLock(const FolderLock&) = delete;
    FolderLock& operator=(const FolderLock&) = delete;

    /// False if the folder is missing, can't be written to, or somebody else keeps it.
    [[nodiscard]] bool isHeld() const { return handle_ >= 0; }
    /// The system's words for why it isn't held; empty if it is.
    [[nodiscard]] const std::string& getReason() const { return reason_; }

private:
    std::intptr_t handle_ = -1; // of the open file
    std::string reason_;
};

} // namespace MVR::Platform
