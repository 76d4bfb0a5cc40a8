#include "plugins/libraries/library_manager.h"

#include "core/base/border.h"
#include "core/base/error_codes.h"
#include "core/base/folders.h"
#include "core/base/sdk/log.h"
#include "platform/libraries.h"
#include "platform/sdk/files.h"
#include "plugins/libraries/instance_maker.h"
#include "plugins/libraries/library.h"
#include "plugins/libraries/plugin.h"

#include <algorithm>
#include <utility>

namespace MVR {
namespace {

/// A module that is freed again unless it is kept.
class LoadedModule {
public:
    explicit LoadedModule(Platform::LibraryHandle handle) : handle_(handle) {}
    LoadedModule(const LoadedModule&) = delete;
    LoadedModule& operator=(const LoadedModule&) = delete;
    ~LoadedModule() { Platform::freeLibrary(handle_); }

    explicit operator bool() const { return handle_ != nullptr; }
    template <class Function>
    Function find(const char* name) const {
        return reinterpret_cast<Function>(Platform::findFunction(handle_, name));
    }
    Platform::LibraryHandle keep() { return std::exchange(handle_, nullptr); }

private:
    Platform::LibraryHandle handle_;
};

/// Loads with the tools' folder as current folder, so that a library finds others beside it.
Platform::LibraryHandle loadFromToolFolder(const std::string& path, std::string& reason) {
    const std::string current = Platform::currentFolder();
    Platform::setCurrentFolder(readInstallValue("pluginpath"));
    const Platform::LibraryHandle handle = Platform::loadLibrary(path);
    reason = Platform::lastLibraryError();
    if (handle == nullptr) {
        Log log(Log::Error);
        log.write("Could not load library on path", path, Log::OwnLevel);
        if (!reason.empty())
            log.write("reason", reason, Log::OwnLevel);
    }
    Platform::setCurrentFolder(current);
    return handle;
}

} // namespace

LibraryManager::LibraryManager() {
    Log entry("Creating library manager", Log::Notice);
    registerRow(Codes::kLibraryAlreadyLoaded);
    registerRow(Codes::kLibraryCouldNotLoad);
}

LibraryManager::~LibraryManager() {
    Log entry("Destroying library manager", Log::Notice);
}

void LibraryManager::loadLibraries() {
    Log entry("Loading libraries", Log::Notice);
    std::string folder = readInstallValue("pluginpath");
    entry.write("plugin path", folder, Log::OwnLevel);
    // Without the value this is the root of the file system, whose libraries are loaded.
    folder += "\\";
    for (const Platform::FoundFile& file : Platform::listFiles(folder + Platform::libraryPattern()))
        if (file.isRegular)                        // opening a pipe would wait for ever
            (void)loadLibrary(folder + file.name); // a bad library never stops the scan
}

std::int32_t LibraryManager::loadLibrary(const std::string& path) {
    Log entry("Loading library", Log::Notice);
    entry.write("path", path, Log::OwnLevel);
    if (findLibrary(path) != nullptr) {
        entry.write("Library already exists. skipping load");
        return reportCode(Codes::kLibraryAlreadyLoaded);
    }
    entry.write("creating library");
    refused_.erase(std::remove_if(refused_.begin(), refused_.end(),
                                  [&path](const Refused& each) { return each.path == path; }),
                   refused_.end());
    std::int32_t code = 0;
    if (createLibrary(path, code) == nullptr) {
        const ErrorCode& failure = ErrorCode::instance()->find(code);
        entry.write("Library creation failed", failure.getMessage(), Log::OwnLevel);
        if (failure.getType() < ErrorCode::Warning)
            return reportCode(Codes::kLibraryCouldNotLoad);
    }
    return 0;
}

Library* LibraryManager::createLibrary(const std::string& path, std::int32_t& code) {
    Log entry("Creating library", Log::Warning);
    entry.write("library path", path, Log::OwnLevel);
    std::string reason;
    LoadedModule module(loadFromToolFolder(path, reason));
    if (!module) {
        code = refuse(path, Codes::kLibraryCouldNotLoad, "it can't be loaded: " + reason);
        return nullptr;
    }
    const auto getVersion = module.find<GetPluginVersion>("getVersion");
    if (getVersion == nullptr) { // somebody else's library: no failure
        code = refuse(path, Codes::kLibraryNoVersion,
                      "it isn't a library of tools: it lacks getVersion");
        return nullptr;
    }
    const auto who = [&path] { return "The library " + path; };
    if (const std::int32_t version = Border::ask(who, "getVersion", std::int32_t{0}, getVersion);
        version != kPluginInterfaceVersion) {
        code = refuse(path, Codes::kLibraryWrongVersion,
                      "it has version " + std::to_string(version) + " of the tool contract, not " +
                          std::to_string(kPluginInterfaceVersion));
        return nullptr;
    }
    const auto getPlugin = module.find<GetPlugin>("getPlugin");
    if (getPlugin == nullptr) {
        code = refuse(path, Codes::kLibraryNoPlugins,
                      "it isn't a library of tools: it lacks getPlugin");
        return nullptr;
    }
    auto* const library = new Library(module.keep(), path);
    for (std::int32_t i = 0;; ++i) {
        CCameraPlugin* descriptor = nullptr;
        (void)Border::call(who, "getPlugin", [&] { descriptor = getPlugin(i); });
        if (descriptor == nullptr)
            break;
        std::int32_t ignored = 0;
        Plugin::create(library, descriptor, ignored);
        if (i + 1 == kMostPlugins) {
            entry.write("The library offers plugins without end", Log::Error);
            break;
        }
    }
    return library;
}

std::int32_t LibraryManager::refuse(const std::string& path, const CodeRow& code,
                                    const std::string& text) {
    refused_.push_back({path, text});
    return reportCode(code);
}

std::int32_t LibraryManager::getLibraryCount() const {
    return static_cast<std::int32_t>(libraries_.size());
}

Library* LibraryManager::getLibrary(std::int32_t index) const {
    return index >= 0 && index < getLibraryCount() ? libraries_[static_cast<std::size_t>(index)]
                                                   : nullptr;
}

Library* LibraryManager::findLibrary(const std::string& path) const {
    const auto found = std::find_if(libraries_.begin(), libraries_.end(),
                                    [&path](Library* each) { return each->getPath() == path; });
    return found != libraries_.end() ? *found : nullptr;
}

Plugin* LibraryManager::findPlugin(const std::string& type) const {
    for (Library* library : libraries_)
        if (Plugin* const plugin = library->findPlugin(type))
            return plugin;
    return nullptr;
}

std::int32_t LibraryManager::addLibrary(Library* library) {
    if (std::find(libraries_.begin(), libraries_.end(), library) != libraries_.end())
        return reportCode(Codes::kLibraryAlreadyListed);
    libraries_.push_back(library);
    return 0;
}

void LibraryManager::removeLibrary(Library* library) {
    const auto found = std::find(libraries_.begin(), libraries_.end(), library);
    if (found != libraries_.end())
        libraries_.erase(found);
}

namespace {

/// Calls `visit(plugin)` for each plug-in of each library, in order, until it returns true.
template <class Visit>
void forEachPlugin(const std::vector<Library*>& libraries, Visit visit) {
    for (Library* library : libraries)
        for (std::int32_t i = 0; i < library->getPluginCount(); ++i)
            if (visit(*library->getPlugin(i)))
                return;
}

} // namespace

std::int32_t LibraryManager::getInstanceCount(const CoreImplementation* core) const {
    std::int32_t count = 0;
    forEachPlugin(libraries_, [&](Plugin& plugin) {
        for (std::int32_t i = 0; i < plugin.getInstanceCount(); ++i)
            count += core == nullptr || plugin.getMember(i)->getCore() == core ? 1 : 0;
        return false;
    });
    return count;
}

PluginInstance* LibraryManager::getInstance(std::int32_t index,
                                            const CoreImplementation* core) const {
    PluginInstance* found = nullptr;
    forEachPlugin(libraries_, [&](Plugin& plugin) {
        for (std::int32_t i = 0; i < plugin.getInstanceCount(); ++i) {
            const PluginMember& each = *plugin.getMember(i);
            if ((core == nullptr || each.getCore() == core) && index-- == 0) {
                found = each.getInstance();
                return true;
            }
        }
        return false;
    });
    return found;
}

void LibraryManager::destroyInstances(const CoreImplementation* core) {
    forEachPlugin(
        libraries_,
        [core](Plugin& plugin) {
            for (std::int32_t i = plugin.getInstanceCount() - 1; i >= 0; --i) {
                // Destroying an instance may destroy others, those below it in the tree.
                PluginMember* const each = plugin.getMember(i);
                if (each != nullptr && each->getCore() == core)
                    each->end();
            }
            return false;
        });
}

std::int32_t LibraryManager::destroyLibraries() {
    while (!libraries_.empty())
        libraries_.back()->destroy();
    refused_.clear();
    return 0;
}

} // namespace MVR
