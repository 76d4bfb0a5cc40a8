// The nodes of the tree of tools.
#pragma once

#include "core/util/sdk/dynamic_object.h"
#include "gui/tree_node.h"
#include "plugins/model_parts.h"
#include "plugins/save_mask.h"

#include <cstddef>
#include <cstdint>
#include <string>
#include <vector>

namespace MVR {

class AdaptorInterface;
class CoreImplementation;
class CoreServices;
class ModelPlace;
class PluginInstance;
class SceneNode;
class Tag;

/// The tree's view of one placed tool: it gives the instance a place under a parent, a label and a
/// check mark, and keeps what a model said about its scene objects.
///
/// At every moment exactly one of these owns a reference: its parent, InstanceManager (the root),
/// or a restore object of the host's undo list. Destroying a reference destroys its instance and
/// all below, but not the scene objects. Host thread only; no operation recurses over the tree.
class InstanceReference final : public GUI::TreeNode,
                                public Util::DynamicCreator<InstanceReference> {
public:
    /// A pointer to a reference that becomes null when the reference is destroyed.
    class Watch {
    public:
        explicit Watch(InstanceReference* target) { set(target); }
        Watch(Watch&& other) noexcept : Watch(other.target_) { other.set(nullptr); }
        Watch& operator=(Watch&&) = delete;
        ~Watch() { set(nullptr); }
        void set(InstanceReference* target);
        [[nodiscard]] InstanceReference* get() const { return target_; }

    private:
        friend class InstanceReference;
        InstanceReference* target_ = nullptr;
        Watch* next_ = nullptr; // the list of the target's watches
        Watch** link_ = nullptr;
    };

    /// A holder: a reference without instance, outside the tree.
    InstanceReference();
    /// Becomes the reference of `instance`, which it destroys with itself.
    explicit InstanceReference(PluginInstance* instance);
    /// Destroys what is below, in order and children first, then the instance.
    ~InstanceReference() override;

    /// Returns "name - plug-in", such as "Camera_01 - Camera".
    std::string getLabel() override;
    /// Gives the tool the user's new name, with or without the plug-in; it is made unique.
    /// A blank one changes nothing.
    void setLabel(std::string text) override;
    /// Returns the name in the text of a label: what is before the plug-in, if that is there.
    [[nodiscard]] std::string nameInLabel(std::string text) const;

    /// Null for a holder.
    [[nodiscard]] PluginInstance* getInstance() const { return instance_; }
    /// Null for a holder.
    [[nodiscard]] CoreImplementation* getCore() const;
    [[nodiscard]] CoreServices* getServices() const;
    /// Returns the instance's name; while it is created from data, the name that it has there;
    /// "(NULL)" for a holder.
    [[nodiscard]] std::string getInstanceName() const;
    /// Returns null for the root, and while outside the tree.
    [[nodiscard]] InstanceReference* getParentReference() const;
    [[nodiscard]] InstanceReference* getChildReference(std::size_t index) const;

    /// Returns false while the reference waits in a restore object.
    [[nodiscard]] bool isInTree() const { return inTree_; }
    /// For the restore objects: a tool that leaves or enters the tree also leaves or enters the
    /// list of inputs.
    void setInTree(bool inTree);

    /// Removes this and all below from the tree in one undo step, with the scene objects if
    /// `deleteScene`. The root itself stays. Does nothing outside the tree. The host may destroy
    /// the reference before this returns.
    void remove(bool deleteScene);

    /// Returns the reference whose getInstanceName() is `name`, or null if there is none: this or
    /// one below, leaving out the child `exclude`; with `lookUp` also one above or beside.
    [[nodiscard]] InstanceReference* findInstance(const std::string& name, bool lookUp,
                                                  const InstanceReference* exclude);
    /// Appends this reference and all below it, depth first.
    void collectInstances(std::vector<InstanceReference*>& list);

    /// Writes what `mask` names of this tool and those below into `out`: an element "MVR" for the
    /// root, otherwise "MVR_Plugin". Always returns 0.
    std::int32_t save(Tag& out, std::uint32_t mask);
    /// Applies those parts of `data` that depend on other tools to this tool and those below;
    /// `stages` are bits of SaveMask. Returns 0, or the code of "INVALIDOKFDATASTRUCTURE" if `data`
    /// doesn't describe this tool, or a node's parent isn't there; what can be applied is applied.
    /// A failure further down is only logged.
    [[nodiscard]] std::int32_t applyAttributes(const Tag& data, std::uint32_t stages);

    /// Returns what it remembers of the data that its tool was made from.
    [[nodiscard]] ModelParts& getModelParts() { return modelParts_; }
    /// Merges the first detailed model that `highPoly`, an element "highpoly", has for this host
    /// and hides it; `path` is the folder of the model that names it, `place` the position of the
    /// element there. The element is kept.
    void loadHighPoly(const Tag& highPoly, const std::string& path, const ModelPlace& place);
    /// Returns a merged node that waits for its name, of this reference or one above, or null if
    /// there is none.
    [[nodiscard]] SceneNode* findHighPolyNode(const std::string& name) const;
    /// The creation ends: the merged nodes get names that begin with the tool's.
    void nameHighPolyNodes();
    /// Shows or hides the scene nodes of this tool and those below.
    void setLowPolyVisible(bool visible);
    /// The same for the host's objects below those nodes.
    void setHighPolyVisible(bool visible);

    /// The tool refused its creation: the reference stays outside the tree, beyond the host's undo
    /// steps, until the attachment ends.
    void abandon();

    /// Writes this tool and those below as a model's file. Returns false if that fails; the log
    /// then has the reason, and an old file stays whole.
    [[nodiscard]] bool saveModelFile(const std::string& path);
    /// Asks the user for a file, writes the model and tells the user whether it was saved.
    void savePrm();
    /// Copies this tool and those below, beside it and in one undo step, with the host's objects
    /// below their nodes. Returns the copy; null for the root, or if nothing was made. If a tool of
    /// the copy made other nodes, the user is told and the host's objects are left out.
    InstanceReference* clone();
    /// Runs the node's context menu. The reference may be destroyed by it.
    void showMenu();

private:
    struct Departure;

    static void destroyChildren(Departure& top);
    void leaveTree(AdaptorInterface& adaptor, bool deleteScene);

    PluginInstance* instance_ = nullptr; // not owned, but destroyed with the reference
    bool inTree_ = true;
    bool isDeparting_ = false; // its children are gone and its entry in the log is open
    Watch* watches_ = nullptr; // not owned
    ModelParts modelParts_;
};

} // namespace MVR
