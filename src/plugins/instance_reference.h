/// \file
/// The nodes of the tree of tools.
#pragma once

#include "core/util/sdk/dynamic_object.h"
#include "gui/tree_node.h"
#include "plugins/save_mask.h"

#include <cstddef>
#include <cstdint>
#include <memory>
#include <string>
#include <vector>

namespace MVR {

class AdaptorInterface;
class CoreImplementation;
class CoreServices;
class ModelParts;
class ModelPlace;
class PluginInstance;
class SceneNode;
class Tag;

/// The tree's view of one placed tool: it gives the instance a place under a parent, a label, a
/// check mark, and carries what a model said about its scene objects.
///
/// At every moment exactly one of these owns a reference: its parent, InstanceManager (the root),
/// or a restore object of the host's undo list. The end of a reference is the end of its instance
/// and of all below, but not of the scene objects. Host thread only; no operation recurses over
/// the tree.
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
    /// Becomes the reference of `instance`, which it destroys at its own end.
    explicit InstanceReference(PluginInstance* instance);
    /// Destroys what is below, in order and children first, and last the instance.
    ~InstanceReference() override;

    /// "name - plug-in", such as "Camera_01 - Camera".
    std::string getLabel() override;
    /// The user's new name for the tool, with or without the plug-in; it is made unique.
    void setLabel(std::string text) override;

    /// Null for a holder.
    [[nodiscard]] PluginInstance* getInstance() const { return instance_; }
    /// Null for a holder.
    [[nodiscard]] CoreImplementation* getCore() const;
    [[nodiscard]] CoreServices* getServices() const;
    /// The instance's name; while it is created from data, the name that it has there. "(NULL)"
    /// for a holder.
    [[nodiscard]] std::string getInstanceName() const;
    /// Null for the root, and while outside the tree.
    [[nodiscard]] InstanceReference* getParentReference() const;
    [[nodiscard]] InstanceReference* getChildReference(std::size_t index) const;

    /// False while the reference waits in a restore object.
    [[nodiscard]] bool isInTree() const { return inTree_; }
    /// For the restore objects: with the tree a tool leaves and enters the list of inputs.
    void setInTree(bool inTree);

    /// Takes this and all below out of the tree in one undo step, with the scene objects if
    /// `deleteScene`. The root itself stays. Does nothing outside the tree. The host may destroy
    /// the reference before this returns.
    void remove(bool deleteScene);

    /// The reference whose getInstanceName() is `name`: this or one below, leaving out the child
    /// `exclude`; with `lookUp` also one above or beside. Null if there is none.
    [[nodiscard]] InstanceReference* findInstance(const std::string& name, bool lookUp,
                                                  const InstanceReference* exclude);
    /// Appends this reference and all below it, depth first.
    void collectInstances(std::vector<InstanceReference*>& list);

    /// Writes what `mask` names of this tool and those below into `out`: an element "MVR" for the
    /// root, else "MVR_Plugin". Always 0.
    std::int32_t save(Tag& out, std::uint32_t mask);
    /// Applies those parts of `data` that depend on other tools to this tool and those below;
    /// `stages` are bits of SaveMask. 0, or the code of "INVALIDOKFDATASTRUCTURE" if `data`
    /// doesn't describe this tool, or a node's parent isn't there; what can be applied is. A
    /// failure further down is logged only.
    [[nodiscard]] std::int32_t applyAttributes(const Tag& data, std::uint32_t stages);

    /// What it remembers of the data that its tool was made from.
    [[nodiscard]] ModelParts& getModelParts() const { return *modelParts_; }
    /// Merges the first detailed model that `highPoly`, an element "highpoly", has for this host
    /// and hides it; `path` is the folder of the model that names it, `place` where the element
    /// stands there. The element is kept.
    void loadHighPoly(const Tag& highPoly, const std::string& path, const ModelPlace& place);
    /// A merged node that waits for its name, of this reference or one above; null if there is
    /// none.
    [[nodiscard]] SceneNode* findHighPolyNode(const std::string& name) const;
    /// The creation ends: the merged nodes take names that begin with the tool's.
    void nameHighPolyNodes();
    /// Shows or hides the scene nodes of this tool and those below.
    void setLowPolyVisible(bool visible);
    /// The same for the host's objects that hang below those nodes.
    void setHighPolyVisible(bool visible);

    /// The tool refused its creation: the reference stays outside the tree, beyond the host's undo
    /// steps, until the attachment ends.
    void abandon();

    /// Writes this tool and those below as a model's file. False, with the reason in the log and
    /// an old file whole, if that fails.
    [[nodiscard]] bool saveModelFile(const std::string& path);
    /// Asks the user for a file, writes the model and tells whether it was saved.
    void savePrm();
    /// A copy of this tool and those below beside it, with copies of the host's objects that hang
    /// below their nodes, in one undo step. Null for the root, or if nothing came into being. If a
    /// tool of the copy made other nodes, the user is told and the host's objects are left out.
    InstanceReference* clone();
    /// Runs the node's context menu. The reference may be destroyed by it.
    void showMenu();

private:
    struct Departure;

    static void destroyChildren(Departure& top);
    void leaveTree(AdaptorInterface& adaptor, bool deleteScene);

    PluginInstance* instance_ = nullptr; // not owned, but ended with the reference
    bool inTree_ = true;
    bool isDeparting_ = false; // its children are gone and its entry in the log is open
    Watch* watches_ = nullptr; // not owned
    const std::unique_ptr<ModelParts> modelParts_;
};

} // namespace MVR
