#pragma once

#include "core/messages/sdk/message_node.h"
#include "core/services/core_sub_system.h"
#include "core/util/sdk/dynamic_object.h"
#include "data/sdk/tag.h"
#include "plugins/instance_manager.h"

#include <cstdint>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

namespace MVR {

class InstanceReference;
class Plugin;

/// One thing that the user can create, as the catalogue shows it: a kind of tool, or a model.
class InstanceManager::Instanciatable final
    : public Util::DynamicObject,
      public Util::DynamicCreator<InstanceManager::Instanciatable>,
      public Util::MessageNode,
      public CoreSubSystem {
public:
    /// Entries by their names; the first if several have one name.
    using Names = std::unordered_map<std::string_view, Instanciatable*>;

    /// The entry of a tool.
    Instanciatable(CoreImplementation* owner, CoreServices* services, Plugin* plugin);
    /// The entry of a model, read from the file at `path`; if the file couldn't be read whole, with
    /// what came before the damage, which `damage` then describes.
    Instanciatable(CoreImplementation* owner, CoreServices* services, Tag data,
                   const std::string& path, std::string damage);

    /// The name that the user sees.
    [[nodiscard]] std::string getName() const override { return name_; }
    [[nodiscard]] const std::string& getVersion() const { return version_; }
    [[nodiscard]] const std::string& getAbout() const { return about_; }
    /// Returns the data for InstanceManager::create().
    [[nodiscard]] const Tag& getData() const { return data_; }
    /// Returns null for a model.
    [[nodiscard]] Plugin* getPlugin() const { return plugin_; }
    /// Returns the model's file; "" for a tool.
    [[nodiscard]] const std::string& getFile() const { return file_; }
    /// Returns the categories that list the entry.
    [[nodiscard]] const std::vector<std::string>& getCategories() const { return categories_; }
    /// Returns the entries of the tools that a model is made of, each once.
    [[nodiscard]] const std::vector<Instanciatable*>& getRequired() const { return required_; }
    /// Fills getRequired(); called when all entries exist.
    void collectRequired(const Names& entries);

    /// What the entry's page of information shows.
    struct Page {
        std::uint16_t layout; ///< the number of its XML resource
        std::string name;
        std::string version;
        std::string about;
        std::string picture; ///< path macros not expanded
        std::vector<std::string> required;
    };
    [[nodiscard]] Page describePage() const;
    /// The page's button: creates this below the selected tool, and enters it as recent. The user
    /// is told if the model's file is damaged.
    InstanceReference* create() const;

private:
    [[nodiscard]] std::string findPicture() const;

    Tag data_;
    std::string name_;
    std::string version_;
    std::string about_;
    std::vector<std::string> categories_;
    Plugin* plugin_ = nullptr; // not owned
    std::string file_;
    std::string damage_; // of the file; "" if it was whole
    std::vector<Instanciatable*> required_;
};

} // namespace MVR
