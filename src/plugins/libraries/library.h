// A loaded library of tools and the plug-ins that it holds.
#pragma once

#include "core/util/sdk/dynamic_object.h"

#include <cstdint>
#include <string>
#include <vector>

namespace MVR {

class Plugin;

/// A library of tools. Lives from its load to the unload of the core; the module itself stays
/// mapped until the process ends, since code of tool objects may still be running. Host thread
/// only.
class Library : public Util::DynamicObject {
public:
    /// Enters itself into the LibraryManager.
    explicit Library(std::string path);
    Library(const Library&) = delete;
    Library& operator=(const Library&) = delete;
    /// Destroys the plug-ins, last first, and removes itself from the LibraryManager.
    ~Library() override;

    /// Returns the file name up to its first ".", where a "." at the front counts as part of the
    /// name.
    [[nodiscard]] std::string getName() const { return name_; }
    [[nodiscard]] const std::string& getPath() const { return path_; }
    [[nodiscard]] std::int32_t getPluginCount() const;
    /// Returns null if `index` is out of range.
    [[nodiscard]] Plugin* getPlugin(std::int32_t index) const;
    /// Returns the first plug-in whose name, or one of whose old names, is `type`; null if there is
    /// none.
    [[nodiscard]] Plugin* findPlugin(const std::string& type) const;
    /// For Plugin's constructor and destructor. The library owns what is registered.
    void registerPlugin(Plugin* plugin);
    void unregisterPlugin(Plugin* plugin);

private:
    std::string path_;
    std::string name_;
    std::vector<Plugin*> plugins_; // owned, freed by destroy(), which removes each from the list
};

} // namespace MVR
