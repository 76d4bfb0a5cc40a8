/// \file
/// The tree of tools of one attachment.
#pragma once

#include "core/services/core_sub_system.h"
#include "core/util/sdk/dynamic_object.h"
#include "core/util/thread_check.h"
#include "data/sdk/tag.h"
#include "plugins/instance_names.h"
#include "plugins/instance_reference.h"

#include <cstddef>
#include <cstdint>
#include <deque>
#include <string>
#include <vector>

namespace MVR {

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
    /// Null before initialize() and after destroyRoot().
    [[nodiscard]] InstanceReference* getRoot() const {
        Util::checkHostThread();
        return root_.get();
    }
    /// Destroys the whole tree. The host must have dropped its undo steps before.
    void destroyRoot();

    [[nodiscard]] std::int32_t getCatalogueSize() const;
    /// Null if `index` is out of range. Valid until the next buildCatalogue().
    [[nodiscard]] Instanciatable* getCatalogueEntry(std::int32_t index) const;
    /// Builds the catalogue anew: the loaded plug-ins that aren't internal, then the models of the
    /// PRM folders. Ends all pointers to entries.
    void buildCatalogue();
    void addPrmFolder(const std::string& path) { prmFolders_.push_back(path); }
    /// An element "Catalogue" with an element "entry" for each entry, in order; see
    /// CoreModels::getCatalogue().
    [[nodiscard]] Tag describeCatalogue() const;

    /// Creates the tools that `data` describes, an element "MVR" with children "MVR_Plugin" or a
    /// single "MVR_Plugin", as the last children of `parent`, or of the root if it is null. All of
    /// it is one undo step. The first of them, or null if none came into being. A tool that fails
    /// is left out. May run nested.
    InstanceReference* create(Tag data, InstanceReference* parent, bool addToRecent);
    /// Creates one tool of the kind `type` under the root.
    InstanceReference* createByType(const std::string& type, const std::string& name,
                                    bool addToRecent);
    /// Moves `dragged` to the end of the children of `target` in one undo step. Does nothing if
    /// `target` is `dragged` or below it.
    void relocate(InstanceReference* dragged, InstanceReference* target);
    /// Reads a model's file and creates its tools below `parent`, or the root if it is null; the
    /// model becomes recent. See CoreModels::load() for the codes.
    [[nodiscard]] std::int32_t createFromFile(const std::string& path, InstanceReference* parent);

    [[nodiscard]] std::int32_t getRecentCount() const;
    /// A copy; index 0 is the oldest. Out of range: an empty tag.
    [[nodiscard]] Tag getRecentEntry(std::int32_t index) const;
    /// The names of the entry's tools; "" out of range.
    [[nodiscard]] std::string getRecentLabel(std::int32_t index) const;
    /// Takes over a tag that getRecent() gave; the newest stay if it is too long. Any other tag
    /// leaves the list empty.
    void setRecent(const Tag& tag);
    /// A tag "Recent" with a copy of each entry, oldest first.
    [[nodiscard]] Tag getRecent() const;
    /// Makes `data` the newest entry, and takes an equal one out.
    void addRecent(const Tag& data);
    /// Removes the oldest entries that are too many for Setting::kRecentItems.
    void trimRecent();

    /// The tools of the tree but the root, each before those below it; with `checkedOnly` those
    /// that are checked themselves.
    [[nodiscard]] std::vector<PluginInstance*> getInstances(bool checkedOnly) const;
    /// The reference of a new instance, which, unless it is the root, is undone with the host's
    /// open step. Null, and logged, if the instance is another core's.
    [[nodiscard]] InstanceReference* createReference(PluginInstance* instance);
    /// The same instances in an order in which a tool runs after those whose scene nodes its own
    /// hang below. Else the order stays. Takes any depth, in time proportional to the scene nodes.
    [[nodiscard]] std::vector<PluginInstance*>
    sortForRecording(const std::vector<PluginInstance*>& instances);

    /// The names that tools of the tree use; kept by the instances.
    [[nodiscard]] InstanceNames& getNames() { return names_; }

    // The tree's control, whose items stand for references.
    /// The selected item's, null if there is none.
    [[nodiscard]] InstanceReference* getSelected() const { return selected_.get(); }
    /// Another item was selected, or none: its tool may select its object in the host.
    void select(InstanceReference* reference);
    /// A drag begins at an item; false if it has to end at once, as the root can't be moved.
    [[nodiscard]] bool beginDrag(InstanceReference* reference);
    [[nodiscard]] bool isDragging() const { return isDragging_; }
    /// The mouse button is let go, over an item or none: relocates, unless Ctrl is held.
    void endDrag(InstanceReference* target, bool isCtrlHeld);
    /// The delete key: deletes the selected tool with its scene objects, but never the root.
    void deleteSelected();
    /// The label of an item is about to be edited: gives the text to begin with.
    [[nodiscard]] std::string beginLabelEdit(InstanceReference& reference);
    /// The edit ended; `text` is null if the user gave it up.
    void endLabelEdit(InstanceReference* reference, const std::string* text);

private:
    struct Creation {
        InstanceReference* first = nullptr;
        std::size_t missing = 0; // tools of the data that could not be made
    };

    Creation createAll(Tag data, InstanceReference* parent, bool addToRecent);
    void addModels(const std::string& folder);
    void clearCatalogue();

    InstanceNames names_;
    Util::Owned<InstanceReference> root_;
    std::deque<Tag> recent_; // oldest first
    std::vector<Util::Owned<Instanciatable>> catalogue_;
    std::vector<std::string> prmFolders_; // where "*.prm" files lie
    InstanceReference::Watch selected_{nullptr};
    InstanceReference::Watch dragged_{nullptr};
    bool isDragging_ = false;
};

} // namespace MVR
