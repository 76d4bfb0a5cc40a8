#include "platform/libraries.h"

#include "platform/posix/library_file.h"
#include "platform/sdk/files.h"

#include <climits>
#include <cstdlib>
#include <dlfcn.h>
#include <link.h>
#include <string>
#include <utility>
#include <vector>

namespace MVR::Platform {

namespace {

/// The library of this code. Looked up once, early: the loader knows a path as it was given, which
/// may be relative to a current folder that changes later.
struct OwnModule {
    LibraryHandle handle = nullptr;
    char path[PATH_MAX] = "";
    bool found = false;
};

OwnModule& findOwnModule() {
    static OwnModule module;
    if (module.found)
        return module;
    module.found = true;
    Dl_info info{};
    if (dladdr(&module, &info) && info.dli_fname) {
        module.handle = dlopen(info.dli_fname, RTLD_LAZY | RTLD_NOLOAD);
        if (!realpath(info.dli_fname, module.path))
            module.path[0] = '\0';
    }
    if (!module.handle) {
        // The loader doesn't know the program itself by its file, nor always its whole path.
        module.handle = dlopen(nullptr, RTLD_LAZY);
#ifdef __linux__
        if (!realpath("/proc/self/exe", module.path))
            module.path[0] = '\0';
#endif
    }
    // The handle stays valid without a count of its own, which would keep the library from
    // unloading.
    if (module.handle)
        dlclose(module.handle);
    dlerror();
    return module;
}

constexpr int kMostHelpers = 100; ///< that one library needs from its own folder, with theirs

/// Loads libraries, and for each the helpers beside it that the loader doesn't find by itself: it
/// takes those that are loaded already. They stay only as long as somebody needs them.
class HelperLoading {
public:
    HelperLoading() = default;
    HelperLoading(const HelperLoading&) = delete;
    HelperLoading& operator=(const HelperLoading&) = delete;
    ~HelperLoading() {
        for (const LibraryHandle helper : helpers_)
            dlclose(helper);
    }

    /// Returns null on failure, with the reason in `reason`.
    LibraryHandle load(const std::string& file, std::string& reason) {
        reason = faultOfLibraryFile(file);
        if (!reason.empty())
            return nullptr;
        while (true) {
            reason.clear();
            if (const LibraryHandle library = dlopen(file.c_str(), RTLD_NOW | RTLD_LOCAL))
                return library;
            const char* const text = dlerror();
            reason = text != nullptr ? text : "";
            // "libhelper.so: cannot open shared object file: No such file or directory"
            const std::string missing = reason.substr(0, reason.find(':'));
            const std::string beside = file.substr(0, file.rfind('/') + 1) + missing;
            if (missing.find('/') != std::string::npos || !fileExists(beside) ||
                ++tried_ > kMostHelpers)
                return nullptr;
            const LibraryHandle helper = load(beside, reason);
            if (helper == nullptr)
                return nullptr;
            helpers_.push_back(helper);
        }
    }

private:
    std::vector<LibraryHandle> helpers_;
    int tried_ = 0;
};

/// Why the last loadLibrary() failed.
std::string& lastReason() {
    static std::string reason;
    return reason;
}

} // namespace

LibraryHandle loadLibrary(std::string_view path) {
    std::string file = foldPath(path);
    if (file.find('/') == std::string::npos)
        file.insert(0, "./");
    return HelperLoading().load(file, lastReason());
}

void* findFunction(LibraryHandle library, const char* name) {
    void* const function = library ? dlsym(library, name) : nullptr;
    if (!function)
        return nullptr;
    // The search continues in the libraries that this one needs, which may be other plug-ins.
    Dl_info unused;
    void* place = nullptr;
    void* own = nullptr;
    if (dladdr1(function, &unused, &place, RTLD_DL_LINKMAP) == 0 ||
        dlinfo(library, RTLD_DI_LINKMAP, &own) != 0)
        return nullptr;
    return place == own ? function : nullptr;
}

void freeLibrary(LibraryHandle library) {
    if (library)
        dlclose(library);
}

LibraryHandle ownModule() {
    return findOwnModule().handle;
}

std::string ownModulePath() {
    return findOwnModule().path;
}

std::string libraryPattern() {
#if defined(_WIN32)
    return "*.dll";
#elif defined(__APPLE__)
    return "*.dylib";
#else
    return "*.so";
#endif
}

std::string lastLibraryError() {
    const char* text = dlerror();
    std::string reason = std::exchange(lastReason(), "");
    return text != nullptr ? text : reason;
}

} // namespace MVR::Platform
