// The tree of tools of one attachment.
#pragma once

#include "core/services/core_sub_system.h"
#include "core/util/sdk/dynamic_object.h"
#include "core/util/thread_check.h"
#include "data/sdk/tag.h"
#include "plugins/instance_names.h"
#include "plugins/instance_reference.h"
#include "plugins/recent_list.h"
#include "plugins/tree_control.h"

#include <cstdint>
#include <memory>
#include <string>
#include <vector>

namespace MVR {

class Catalogue;
class PluginInstance;

/// Owns the tree of placed tools, the catalogue of what the user can create, and the list of what
/// was created lately. Host thread only.
class InstanceManager : public CoreSubSystem {
public:
    /// One entry of the catalogue; in plugins/instanciatable.h.
    class Instanciatable;

    InstanceManager(CoreImplementation* core, CoreServices* services);
    ~InstanceManager() override;

    /// Creates the root, named "Mirvane".
    void initialize() override;
    /// Returns null before initialize() and after destroyRoot().
    [[nodiscard]] InstanceReference* getRoot() const {
        Util::checkHostThread();
        return root_.get();
    }
    /// Destroys the whole tree. The host must have dropped its undo steps before.
    void destroyRoot();

    [[nodiscard]] std::int32_t getCatalogueSize() const;
    /// Returns null if `index` is out of range. The entry is valid until the next buildCatalogue().
    [[nodiscard]] Instanciatable* getCatalogueEntry(std::int32_t index) const;
    /// Builds the catalogue anew: the loaded plug-ins that aren't internal, then the models of the
    /// PRM folders. Pointers to the old entries become invalid.
    void buildCatalogue();
    void addPrmFolder(const std::string& path);
    /// Returns an element "Catalogue" with an element "entry" for each entry, in order; see
    /// CoreModels::getCatalogue().
    [[nodiscard]] Tag describeCatalogue() const;

    /// Creates the tools that `data` describes, an element "MVR" with children "MVR_Plugin" or a
    /// single "MVR_Plugin", as the last children of `parent`, or of the root if it is null or no
    /// longer in the tree. All of it is one undo step. Returns the first of them, or null if none
    /// was made. A tool that fails is left out. May run nested.
    InstanceReference* create(Tag data, InstanceReference* parent, bool addToRecent);
    /// Creates one tool of the kind `type` under the root.
    InstanceReference* createByType(const std::string& type, const std::string& name,
                                    bool addToRecent);
    /// Moves `dragged` to the end of the children of `target` in one undo step. Does nothing if
    /// `target` is `dragged` or below it, or if one of them is no longer in the tree.
    void relocate(InstanceReference* dragged, InstanceReference* target);
    /// Reads a model's file and creates its tools below `parent`, or the root if it is null; the
    /// model becomes recent. See CoreModels::load() for the codes.
    [[nodiscard]] std::int32_t createFromFile(const std::string& path, InstanceReference* parent);

    // The list of what was created lately; see RecentList.
    [[nodiscard]] std::int32_t getRecentCount() const { return recent_.size(); }
    [[nodiscard]] Tag getRecentEntry(std::int32_t index) const { return recent_.getEntry(index); }
    [[nodiscard]] std::string getRecentLabel(std::int32_t index) const {
        return recent_.getLabel(index);
    }
    void setRecent(const Tag& tag) { recent_.restore(tag); }
    [[nodiscard]] Tag getRecent() const { return recent_.store(); }
    void addRecent(const Tag& data) { recent_.add(data); }
    void trimRecent() { recent_.trim(); }

    /// Returns the tools of the tree except the root, each before those below it; with
    /// `checkedOnly` only those that are checked themselves.
    [[nodiscard]] std::vector<PluginInstance*> getInstances(bool checkedOnly) const;
    /// Makes the reference of a new instance, which, unless it is the root, is undone with the
    /// host's open step. Returns null, and logs it, if the instance belongs to another core.
    [[nodiscard]] InstanceReference* createReference(PluginInstance* instance);
    /// Returns the same instances in the order in which a take runs them; see findRunOrder().
    [[nodiscard]] std::vector<PluginInstance*>
    sortForRecording(const std::vector<PluginInstance*>& instances);

    /// Lets the core's own driver poll the tools' devices last, in the order of the tree. Cheap
    /// while nothing changed.
    void orderDevices();

    /// The names that tools of the tree use; kept by the instances.
    [[nodiscard]] InstanceNames& getNames() { return names_; }

    /// What the user does with the items of the tree's control.
    [[nodiscard]] TreeControl& getControl() { return control_; }
    [[nodiscard]] InstanceReference* getSelected() const { return control_.getSelected(); }

private:
    InstanceNames names_;
    Util::Owned<InstanceReference> root_;
    std::unique_ptr<Catalogue> catalogue_;
    RecentList recent_;
    TreeControl control_;
    std::uint64_t orderedRevision_ = ~std::uint64_t{0}; // of the tree, at the last orderDevices()
};

} // namespace MVR
