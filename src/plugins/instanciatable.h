#pragma once

#include "core/util/dynamic_object.h"
#include "data/tag.h"
#include "plugins/instance_manager.h"

#include <string>
#include <vector>

namespace MVR {

class Plugin;

/// One thing that the user can create, as the catalogue shows it.
class InstanceManager::Instanciatable final : public Util::DynamicObject {
public:
    /// The entry of a tool.
    explicit Instanciatable(Plugin* plugin);

    [[nodiscard]] const std::string& getName() const { return name_; }
    [[nodiscard]] const std::string& getVersion() const { return version_; }
    [[nodiscard]] const std::string& getAbout() const { return about_; }
    /// What InstanceManager::create() takes to create it.
    [[nodiscard]] const Tag& getData() const { return data_; }
    [[nodiscard]] Plugin* getPlugin() const { return plugin_; }
    /// Where the entry is filed.
    [[nodiscard]] const std::vector<std::string>& getCategories() const { return categories_; }

private:
    Tag data_;
    std::string name_;
    std::string version_;
    std::string about_;
    std::vector<std::string> categories_;
    Plugin* plugin_; // not owned
};

} // namespace MVR
