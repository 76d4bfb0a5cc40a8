#include "platform/libraries.h"

#include "platform/posix/library_file.h"
#include "platform/sdk/files.h"

#include <climits>
#include <cstdlib>
#include <dlfcn.h>
#include <link.h>
#include <utility>

namespace MVR::Platform {

namespace {

/// Why loadLibrary() refused a file itself; "" if the loader has the last word.
std::string& ownRefusal() {
    static std::string text;
    return text;
}

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

} // namespace

LibraryHandle loadLibrary(std::string_view path) {
    std::string file = foldPath(path);
    if (file.find('/') == std::string::npos)
        file.insert(0, "./");
    ownRefusal() = faultOfLibraryFile(file);
    if (!ownRefusal().empty())
        return nullptr;
    return dlopen(file.c_str(), RTLD_NOW | RTLD_LOCAL);
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
    if (!ownRefusal().empty())
        return std::exchange(ownRefusal(), {});
    const char* text = dlerror();
    return text ? text : "";
}

} // namespace MVR::Platform
