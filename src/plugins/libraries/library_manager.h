// All tool libraries of the process.
#pragma once

#include "core/util/sdk/singleton.h"

#include <cstdint>
#include <string>
#include <vector>

namespace MVR {

struct CodeRow;
class CoreImplementation;
class InstanceMaker;
class Library;
class Plugin;
class PluginInstance;

/// Finds and keeps the tool libraries, and knows their plug-ins and instances. Libraries live from
/// the load of the core to its unload; attachments share them.
///
/// 1. setMaker().
/// 2. The built-in plug-ins are added to CoreLibrary.
/// 3. loadLibraries().
/// 4. destroyInstances(core) at each detach.
/// 5. destroyLibraries() at unload.
///
/// A library that can't be used is logged and skipped. Host thread only.
class LibraryManager final : public Util::Singleton<LibraryManager> {
public:
    /// Sets the maker of the plug-ins' instances, which isn't owned and outlives this.
    void setMaker(InstanceMaker& maker) { maker_ = &maker; }
    /// Not allowed before setMaker().
    [[nodiscard]] InstanceMaker& getMaker() const { return *maker_; }

    /// Loads every library of the folder that the install value "pluginpath" names.
    void loadLibraries();
    /// Loads a library and creates its plug-ins. Returns 0, also for a foreign library, which
    /// exports no `getVersion`; or the code of "LIBRARY_ALREADYLOADED" for a path that is loaded,
    /// compared byte for byte, or of "LIBRARY_COULDNOTLOAD" for a library that can't be used.
    [[nodiscard]] std::int32_t loadLibrary(const std::string& path);

    [[nodiscard]] std::int32_t getLibraryCount() const;
    /// A library that can't be used.
    struct Refused {
        std::string path;
        std::string text; ///< why, in English
    };
    /// In the order in which they were tried; each path once, and none that loaded since.
    [[nodiscard]] const std::vector<Refused>& getRefused() const { return refused_; }
    /// Null if `index` is out of range.
    [[nodiscard]] Library* getLibrary(std::int32_t index) const;
    /// Returns the library of exactly this path, or null.
    [[nodiscard]] Library* findLibrary(const std::string& path) const;
    /// Returns the plug-in of this type name, or null; that of the library loaded first if several
    /// have one.
    [[nodiscard]] Plugin* findPlugin(const std::string& type) const;
    /// For Library's constructor and destructor. Returns 0, or the code of "LIBRARY_ALREADYINLIST"
    /// for one that is in the list.
    [[nodiscard]] std::int32_t addLibrary(Library* library);
    void removeLibrary(Library* library);

    /// The tools of `core`, or of all cores if it is null, in the order of libraries, plug-ins and
    /// creation.
    [[nodiscard]] std::int32_t getInstanceCount(const CoreImplementation* core) const;
    /// Null if `index` is out of range.
    [[nodiscard]] PluginInstance* getInstance(std::int32_t index,
                                              const CoreImplementation* core) const;
    /// Destroys the tools of `core`, for each plug-in the last first.
    void destroyInstances(const CoreImplementation* core);
    /// Destroys the libraries, last first. Always returns 0.
    std::int32_t destroyLibraries();

    ~LibraryManager() override;

private:
    friend class Util::Singleton<LibraryManager>;
    LibraryManager();

    Library* createLibrary(const std::string& path, std::int32_t& code);
    std::int32_t refuse(const std::string& path, const CodeRow& code, const std::string& text);

    InstanceMaker* maker_ = nullptr;
    std::vector<Library*> libraries_; // owned; destroyLibraries() empties it
    std::vector<Refused> refused_;
};

} // namespace MVR
