#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

/// Files and folders. Paths are bytes, written with "\" or "/"; each operation folds the path that
/// it is given. After a failure `lastFileError` tells the reason. All operations may be called at
/// any time.
namespace MVR::Platform {

/// The path as the machine knows it: "\" becomes "/", repeated separators become one, and where a
/// component of the exact name is missing, one that differs only in the case of ASCII letters is
/// taken (of several the first in byte order). What doesn't exist in any case stays as it is
/// written. A path with a zero byte names nothing and gives an empty one.
std::string foldPath(std::string_view path);

/// Where a path leads: absolute, with every link, "." and ".." followed, and separators "/". Two
/// paths of one file or folder give the same text. Empty if there is nothing at its end.
/// Stands for GetFinalPathNameByHandleA.
std::string canonicalPath(std::string_view path);

/// Makes one folder; its parent must exist. True if the folder is there now, whoever made it.
/// Stands for CreateDirectoryA.
[[nodiscard]] bool createFolder(std::string_view path);

struct FoundFile {
    std::string name; ///< without its folder
    bool isFolder;
    /// False for what has no bytes of its own: a folder, a pipe, a device, a link to nothing.
    bool isRegular;
};

/// What lies in a folder and fits the pattern: a folder path, then a last component with "*" (any
/// bytes, also none) and "?" (one byte); ASCII case makes no difference, and "*.*" fits all names.
/// Sorted by name in byte order. "." and ".." are left out. A folder that is missing or can't be
/// read gives an empty list. Stands for FindFirstFileA, FindNextFileA, FindClose.
std::vector<FoundFile> listFiles(std::string_view pattern);

/// Empty on failure. Stands for GetCurrentDirectoryA.
std::string currentFolder();
/// Stands for SetCurrentDirectoryA.
bool setCurrentFolder(std::string_view path);

/// True if there is a file of any kind; a folder is none. Stands for GetFileAttributesA.
bool fileExists(std::string_view path);

/// The most that `readFile` takes of a file whose format has no limit of its own.
constexpr std::uint64_t kLargestFileBytes = std::uint64_t(1) << 31;

/// Reads a whole file, byte for byte. One of more than `mostBytes` is refused before memory is
/// taken for it. On failure false, and `out` is as it was. Stands for CreateFileA, ReadFile,
/// CloseHandle.
[[nodiscard]] bool readFile(std::string_view path, std::string& out,
                            std::uint64_t mostBytes = kLargestFileBytes);

/// Writes a whole file so that whatever happens either the old file or the new one is there: beside
/// the target under a name of its own, flushed to disk, renamed. On any failure false: what was
/// written is removed, and the old file is whole. A process that is killed meanwhile leaves the
/// unfinished one, named ".mvr-<process>-<number>.tmp".
/// An existing target keeps its permissions, and must be writable; a symbolic link is written
/// through. A target that is no regular file (a pipe, a device) can't be replaced and is written to
/// as it stands. Stands for CreateFileA, WriteFile, CloseHandle.
[[nodiscard]] bool writeFileAtomic(std::string_view path, std::string_view bytes);

/// True if the file was there and is gone. Stands for DeleteFileA.
bool deleteFile(std::string_view path);

/// The system's words for why the latest operation of this header that failed did so, such as "No
/// space left on device"; empty if none has failed yet. Stands for GetLastError.
std::string lastFileError();

} // namespace MVR::Platform
