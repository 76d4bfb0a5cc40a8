#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

/// Files and folders. Paths are bytes, written with "\" or "/"; each operation folds the path that
/// it is given. After a failure `lastFileError` tells the reason. All operations may be called at
/// any time.
namespace MVR::Platform {

/// Returns the path as the machine knows it. "\" becomes "/", and repeated separators become one.
/// If a component of the exact name is missing, one that differs only in the case of ASCII letters
/// replaces it (the first in byte order). What doesn't exist in any case stays as written. A path
/// with a zero byte names nothing and becomes "".
std::string foldPath(std::string_view path);

/// Returns where a path leads: absolute, with every link, "." and ".." followed, and with "/" as
/// separator. Two paths of one file or folder give the same text. Returns "" if there is nothing at
/// its end. Stands for GetFinalPathNameByHandleA.
std::string canonicalPath(std::string_view path);

/// Creates one folder; its parent must exist. Returns true if the folder exists now, whoever
/// created it. Stands for CreateDirectoryA.
[[nodiscard]] bool createFolder(std::string_view path);

/// The same, with all folders above it that are missing.
[[nodiscard]] bool createFolders(std::string_view path);

struct FoundFile {
    std::string name; ///< without its folder
    bool isFolder;
    /// False for what has no bytes of its own: a folder, a pipe, a device, a link to nothing.
    bool isRegular;
};

/// Lists what is in a folder and matches the pattern: a folder path, then a last component with "*"
/// (any bytes, also none) and "?" (one byte). ASCII case makes no difference, and "*.*" matches all
/// names. Sorted by name in byte order, without "." and "..". Returns an empty list if the folder
/// is missing or can't be read. Stands for FindFirstFileA, FindNextFileA, FindClose.
std::vector<FoundFile> listFiles(std::string_view pattern);

/// Returns "" on failure. Stands for GetCurrentDirectoryA.
std::string currentFolder();
/// Stands for SetCurrentDirectoryA.
bool setCurrentFolder(std::string_view path);

/// Returns true if there is a file of any kind; a folder is none. Stands for GetFileAttributesA.
bool fileExists(std::string_view path);

/// The most that `readFile` reads of a file whose format has no limit of its own.
constexpr std::uint64_t kLargestFileBytes = std::uint64_t(1) << 31;

/// Reads a whole file, byte for byte. One of more than `mostBytes` is refused before memory is
/// allocated for it. Returns false, with `out` unchanged, on failure. Stands for CreateFileA,
/// ReadFile, CloseHandle.
[[nodiscard]] bool readFile(std::string_view path, std::string& out,
                            std::uint64_t mostBytes = kLargestFileBytes);

/// Writes a whole file so that, whatever happens, either the old file or the new one is there: it
/// is written beside the target under a name of its own, flushed to disk and renamed. On any
/// failure returns false and removes what was written; the old file is intact. A process that is
/// killed meanwhile leaves the unfinished file, named ".mvr-<process>-<number>.tmp"; the next write
/// in that folder deletes it, and no file of a process that lives. An existing target keeps its
/// permissions and must be writable; a symbolic link is written through. A target that is no
/// regular file (a pipe, a device) can't be replaced and is written to directly. Stands for
/// CreateFileA, WriteFile, CloseHandle.
[[nodiscard]] bool writeFileAtomic(std::string_view path, std::string_view bytes);

/// Deletes a file. Returns true if it was there and no longer is. Stands for DeleteFileA.
bool deleteFile(std::string_view path);

/// Returns the system's words for the latest failure in this header, such as "No space left on
/// device", or "" if nothing has failed yet. Stands for GetLastError.
std::string lastFileError();

} // namespace MVR::Platform
