// The catalogue of what the user can create.
#pragma once

#include "core/util/sdk/dynamic_object.h"
#include "data/sdk/tag.h"
#include "plugins/instanciatable.h"

#include <cstdint>
#include <string>
#include <vector>

namespace MVR {

/// The loaded plug-ins that aren't internal, then the models of some folders.
class Catalogue {
public:
    using Entry = InstanceManager::Instanciatable;

    explicit Catalogue(const CoreSubSystem& owner) : owner_(owner) {}

    /// Adds a folder with "*.prm" files, at any depth.
    void addFolder(const std::string& path) { folders_.push_back(path); }
    /// Makes all entries anew. Pointers to the old ones become invalid.
    void build();
    /// Destroys the entries, last first.
    void clear();

    [[nodiscard]] std::int32_t size() const { return static_cast<std::int32_t>(entries_.size()); }
    /// Returns null if `index` is out of range. The entry is valid until the next build().
    [[nodiscard]] Entry* getEntry(std::int32_t index) const;
    /// See InstanceManager::describeCatalogue().
    [[nodiscard]] Tag describe() const;

private:
    void addModels(const std::string& folder);

    const CoreSubSystem& owner_; // whose core the entries create in
    std::vector<std::string> folders_;
    std::vector<Util::Owned<Entry>> entries_;
};

} // namespace MVR
