#include "platform/sdk/files.h"

#include "platform/posix/ascii.h"

#include <algorithm>
#include <atomic>
#include <cerrno>
#include <charconv>
#include <climits>
#include <csignal>
#include <cstdlib>
#include <fcntl.h>
#include <filesystem>
#include <sys/file.h>
#include <sys/stat.h>
#include <system_error>
#include <unistd.h>
#include <utility>
#include <vector>

namespace MVR::Platform {

namespace {

constexpr std::size_t kChunkBytes = 1 << 16;
constexpr int kMostLinks = 40;  ///< symbolic links that are followed before a path counts as a loop
constexpr int kMostNames = 100; ///< names that are tried for the file beside the target

// The two ends of the name of a file that is being written.
constexpr std::string_view kUnfinished = ".mvr-";
constexpr std::string_view kUnfinishedEnd = ".tmp";

/// One for all threads. Data of each thread, in a library that is loaded at run time, may stand
/// where LeakSanitizer misreads its bounds and ends the process.
std::atomic<int> lastError = 0;

bool fail(int error) {
    lastError = error;
    return false;
}

bool succeedIf(bool success) {
    return success || fail(errno);
}

bool isThere(const std::string& path) {
    struct stat status;
    return lstat(path.c_str(), &status) == 0;
}

std::string joinSeparators(std::string_view path) {
    std::string joined;
    joined.reserve(path.size());
    for (char c : path) {
        const char folded = c == '\\' ? '/' : c;
        if (folded != '/' || joined.empty() || joined.back() != '/')
            joined += folded;
    }
    return joined;
}

/// Calls `visit` with each entry of a folder, in any order.
template <typename Visit>
void visitFolder(const std::string& folder, Visit visit) {
    std::error_code error;
    std::filesystem::directory_iterator entry(folder.empty() ? "." : folder, error);
    for (; !error && entry != std::filesystem::directory_iterator(); entry.increment(error))
        visit(*entry);
    if (error)
        fail(error.value());
}

/// Returns the first name in a folder that differs only in case, or `name` itself.
std::string findCase(const std::string& folder, std::string_view name) {
    std::string best;
    const int errorBefore = lastError;
    visitFolder(folder, [&](const std::filesystem::directory_entry& entry) {
        std::string found = entry.path().filename().string();
        if (equalButCase(found, name) && (best.empty() || found < best))
            best = std::move(found);
    });
    lastError = errorBefore;
    return best.empty() ? std::string(name) : best;
}

/// Walks both at once and goes back only to the latest "*", so the time is at most the product of
/// the two lengths.
bool fitsPattern(std::string_view name, std::string_view pattern) {
    if (pattern == "*.*")
        return true;
    std::size_t n = 0;
    std::size_t p = 0;
    std::size_t star = std::string_view::npos;
    std::size_t starName = 0;
    while (n < name.size()) {
        if (p < pattern.size() && pattern[p] == '*') {
            star = p++;
            starName = n;
        } else if (p < pattern.size() &&
                   (pattern[p] == '?' || lowerAscii(pattern[p]) == lowerAscii(name[n]))) {
            ++p;
            ++n;
        } else if (star != std::string_view::npos) {
            p = star + 1;
            n = ++starName;
        } else {
            return false;
        }
    }
    return pattern.find_first_not_of('*', p) == std::string_view::npos;
}

class OpenFile {
public:
    OpenFile(const std::string& path, int flags, mode_t mode = 0)
        : handle_(open(path.c_str(), flags | O_CLOEXEC, mode)) {}
    ~OpenFile() { close(); }
    OpenFile(const OpenFile&) = delete;
    OpenFile& operator=(const OpenFile&) = delete;

    bool isOpen() const { return handle_ >= 0; }
    int get() const { return handle_; }
    bool close() {
        const int handle = std::exchange(handle_, -1);
        return handle < 0 || ::close(handle) == 0;
    }

    bool write(std::string_view bytes) {
        while (!bytes.empty()) {
            const ssize_t count = ::write(handle_, bytes.data(), bytes.size());
            if (count < 0 && errno != EINTR)
                return false;
            bytes.remove_prefix(std::size_t(std::max<ssize_t>(count, 0)));
        }
        return true;
    }

    /// Some file systems and devices have nothing to flush and report EINVAL.
    bool flush() { return fsync(handle_) == 0 || errno == EINVAL; }

private:
    int handle_;
};

/// Returns where a write to `path` ends up: the end of its chain of symbolic links, whether or not
/// there is a file. Returns "" for a loop.
std::string followLinks(std::string path) {
    for (int links = 0; links < kMostLinks; ++links) {
        char target[PATH_MAX];
        const ssize_t length = readlink(path.c_str(), target, sizeof target);
        if (length < 0)
            return path;
        const std::string_view next(target, std::size_t(length));
        if (next.substr(0, 1) == "/")
            path = next;
        else
            path.replace(path.rfind('/') + 1, std::string::npos, next);
    }
    errno = ELOOP;
    return "";
}

bool keepOwnerAndPermissions(const OpenFile& file, const struct stat& old) {
    struct stat status;
    if (fstat(file.get(), &status) != 0)
        return false;
    const mode_t permissions = old.st_mode & 0777;
    // Only an administrator may give files away, so this may fail; the permissions must not.
    [[maybe_unused]] const bool sameOwner =
        (old.st_uid == status.st_uid && old.st_gid == status.st_gid) ||
        fchown(file.get(), old.st_uid, old.st_gid) == 0;
    return (status.st_mode & 0777) == permissions || fchmod(file.get(), permissions) == 0;
}

/// Returns a name in the target's folder that nobody else uses. It is short, since the target's own
/// may be as long as names can be.
std::string nameBeside(const std::string& target) {
    static std::atomic<unsigned> counter{0};
    return target.substr(0, target.rfind('/') + 1)
        .append(kUnfinished)
        .append(std::to_string(getpid()) + "-" + std::to_string(counter++))
        .append(kUnfinishedEnd);
}

/// Returns true if nameBeside() made `name` in a process that is no more.
bool isLeftBehind(const std::string& name) {
    const std::size_t length = name.size();
    if (length < kUnfinished.size() + kUnfinishedEnd.size() ||
        name.compare(0, kUnfinished.size(), kUnfinished) != 0 ||
        name.compare(length - kUnfinishedEnd.size(), kUnfinishedEnd.size(), kUnfinishedEnd) != 0)
        return false;
    pid_t process = 0;
    const char* const end = name.data() + length;
    const auto number = std::from_chars(name.data() + kUnfinished.size(), end, process);
    return number.ec == std::errc() && *number.ptr == '-' && process > 0 && kill(process, 0) != 0 &&
           errno == ESRCH;
}

/// Deletes what killed processes left in the folder of `target`. One of another machine, or of
/// another container, has a number that means nothing here, but it locks its file.
void clearLeftBehind(const std::string& target) {
    const std::string folder = target.substr(0, target.rfind('/') + 1);
    const int errorBefore = lastError;
    std::vector<std::string> names;
    visitFolder(folder, [&names](const std::filesystem::directory_entry& entry) {
        if (std::string name = entry.path().filename().string(); isLeftBehind(name))
            names.push_back(std::move(name));
    });
    for (const std::string& name : names) {
        const OpenFile file(folder + name, O_RDONLY | O_NOFOLLOW | O_NONBLOCK);
        if (file.isOpen() && flock(file.get(), LOCK_EX | LOCK_NB) == 0)
            unlink((folder + name).c_str());
    }
    lastError = errorBefore;
}

void flushFolderOf(const std::string& path) {
    OpenFile folder(path.substr(0, path.rfind('/') + 1) + ".", O_RDONLY | O_DIRECTORY);
    if (folder.isOpen())
        folder.flush();
}

bool fillAndRename(OpenFile& file, const std::string& name, const std::string& target,
                   const struct stat* old, std::string_view bytes) {
    return (!old || keepOwnerAndPermissions(file, *old)) && file.write(bytes) && file.flush() &&
           file.close() && rename(name.c_str(), target.c_str()) == 0;
}

/// `old` is the status of the file that is replaced, or null.
bool replaceFile(const std::string& target, const struct stat* old, std::string_view bytes) {
    clearLeftBehind(target);
    for (int attempt = 0; attempt < kMostNames; ++attempt) {
        const std::string name = nameBeside(target);
        // The bytes of a private file must not be readable by all while they are written.
        OpenFile file(name, O_WRONLY | O_CREAT | O_EXCL, old ? 0600 : 0666);
        if (!file.isOpen()) {
            if (errno == EEXIST)
                continue;
            return fail(errno);
        }
        (void)flock(file.get(), LOCK_EX | LOCK_NB); // a file system without locks has one machine
        if (!fillAndRename(file, name, target, old, bytes)) {
            fail(errno);
            unlink(name.c_str());
            return false;
        }
        flushFolderOf(target);
        return true;
    }
    return fail(EEXIST);
}

} // namespace

std::string foldPath(std::string_view path) {
    if (path.find('\0') != std::string_view::npos)
        return "";
    const std::string joined = joinSeparators(path);
    if (isThere(joined))
        return joined;
    std::string folded;
    std::size_t begin = 0;
    while (begin < joined.size()) {
        const std::size_t end = std::min(joined.find('/', begin), joined.size());
        std::string name = joined.substr(begin, end - begin);
        if (!name.empty() && !isThere(folded + name)) {
            name = findCase(folded, name);
            if (!isThere(folded + name))
                return folded + joined.substr(begin);
        }
        folded += name;
        folded += joined.substr(end, 1);
        begin = end + 1;
    }
    return folded;
}

std::string canonicalPath(std::string_view path) {
    char canonical[PATH_MAX];
    if (!realpath(foldPath(path).c_str(), canonical)) {
        fail(errno);
        return "";
    }
    return canonical;
}

bool createFolder(std::string_view path) {
    const std::string folder = foldPath(path);
    if (mkdir(folder.c_str(), 0777) == 0)
        return true;
    const int error = errno;
    struct stat status;
    return (stat(folder.c_str(), &status) == 0 && S_ISDIR(status.st_mode)) || fail(error);
}

bool createFolders(std::string_view path) {
    const std::string folder = foldPath(path);
    if (createFolder(folder))
        return true;
    for (std::size_t end = folder.find('/', 1); end < folder.size();
         end = folder.find('/', end + 1))
        (void)createFolder(folder.substr(0, end)); // if it fails, so does the last one
    return createFolder(folder);
}

std::vector<FoundFile> listFiles(std::string_view pattern) {
    const std::size_t nameStart = pattern.find_last_of("/\\") + 1;
    const std::string folder = foldPath(pattern.substr(0, nameStart));
    const std::string_view namePattern = pattern.substr(nameStart);
    std::vector<FoundFile> found;
    if (nameStart > 0 && folder.empty())
        return found;
    visitFolder(
        folder,
        [&](const std::filesystem::directory_entry& entry) {
            std::string name = entry.path().filename().string();
            if (fitsPattern(name, namePattern)) {
                std::error_code error;
                const bool isFolder = entry.is_directory(error);
                const bool isRegular = entry.is_regular_file(error);
                found.push_back({std::move(name), isFolder, isRegular});
            }
        });
    std::sort(found.begin(), found.end(),
              [](const FoundFile& a, const FoundFile& b) { return a.name < b.name; });
    return found;
}

std::string currentFolder() {
    char folder[PATH_MAX];
    if (!getcwd(folder, sizeof folder)) {
        fail(errno);
        return "";
    }
    return folder;
}

bool setCurrentFolder(std::string_view path) {
    return succeedIf(chdir(foldPath(path).c_str()) == 0);
}

bool fileExists(std::string_view path) {
    struct stat status;
    return stat(foldPath(path).c_str(), &status) == 0 && !S_ISDIR(status.st_mode);
}

bool readFile(std::string_view path, std::string& out, std::uint64_t mostBytes) {
    OpenFile file(foldPath(path), O_RDONLY);
    struct stat status;
    if (!file.isOpen() || fstat(file.get(), &status) != 0)
        return fail(errno);
    if (S_ISDIR(status.st_mode))
        return fail(EISDIR);
    const bool isRegular = S_ISREG(status.st_mode);
    if (isRegular && std::uint64_t(status.st_size) > mostBytes)
        return fail(EFBIG);
    std::string bytes;
    bytes.reserve(isRegular ? std::size_t(status.st_size) + 1 : kChunkBytes);
    while (true) {
        // A pipe, or a file that grows meanwhile, has no known size.
        const std::size_t have = bytes.size();
        const std::size_t room = bytes.capacity() - have;
        const std::size_t step = room == 0 ? kChunkBytes : std::min(room, kChunkBytes);
        bytes.resize(have + step);
        const ssize_t count = read(file.get(), bytes.data() + have, step);
        if (count < 0 && errno != EINTR)
            return fail(errno);
        bytes.resize(have + std::size_t(std::max<ssize_t>(count, 0)));
        if (bytes.size() > mostBytes)
            return fail(EFBIG);
        if (count == 0) {
            out = std::move(bytes);
            return true;
        }
    }
}

bool writeFileAtomic(std::string_view path, std::string_view bytes) {
    const std::string target = followLinks(foldPath(path));
    if (target.empty())
        return fail(errno);
    struct stat old;
    if (stat(target.c_str(), &old) != 0)
        return errno == ENOENT ? replaceFile(target, nullptr, bytes) : fail(errno);
    if (S_ISDIR(old.st_mode))
        return fail(EISDIR);
    if (access(target.c_str(), W_OK) != 0)
        return fail(errno);
    if (S_ISREG(old.st_mode))
        return replaceFile(target, &old, bytes);
    OpenFile device(target, O_WRONLY);
    return succeedIf(device.isOpen() && device.write(bytes) && device.close());
}

bool deleteFile(std::string_view path) {
    return succeedIf(unlink(foldPath(path).c_str()) == 0);
}

std::string lastFileError() {
    const int error = lastError;
    return error == 0 ? "" : std::generic_category().message(error);
}

} // namespace MVR::Platform
