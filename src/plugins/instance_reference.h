/// \file
/// The nodes of the tree of tools.
#pragma once

#include "core/util/dynamic_object.h"
#include "data/tag.h"
#include "gui/tree_node.h"

#include <cstddef>
#include <cstdint>
#include <string>
#include <vector>

namespace MVR {

class AdaptorInterface;
class CoreImplementation;
class PluginInstance;
class SceneNode;
struct MenuItem;

/// What a save writes, and what a pass of applyAttributes() reads. A pass ignores bits that it has
/// no use for.
namespace SaveMask {
constexpr std::uint32_t kParent = 0x00001;       ///< per scene node: its parent
constexpr std::uint32_t kVisible = 0x00008;      ///< per scene node: whether it is visible
constexpr std::uint32_t kInputProfile = 0x00040; ///< the bindings of the input properties
constexpr std::uint32_t kSelection = 0x00100;    ///< the scene nodes that the model selects
constexpr std::uint32_t kCustomData = 0x01000;   ///< what the tool itself adds
constexpr std::uint32_t kNoChildren = 0x10000;   ///< leaves out the tools below
constexpr std::uint32_t kAnyNodeInfo = 0x007FF;  ///< any of these makes "nodeinfo" appear
constexpr std::uint32_t kModel = 0x019CF;        ///< a model's file
constexpr std::uint32_t kClone = 0x0194F;        ///< a copy within the scene
constexpr std::uint32_t kScene = 0x0B848;        ///< the whole tree, for the host's scene
constexpr std::uint32_t kDetached = 0x1B848;     ///< one tool, for the host to keep beside it
} // namespace SaveMask

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
    InstanceReference() = default;
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
    /// doesn't describe this tool. A failure further down is logged only.
    [[nodiscard]] std::int32_t applyAttributes(const Tag& data, std::uint32_t stages);

    /// Writes this tool and those below as a model's file. False, with the reason in the log and
    /// an old file whole, if that fails.
    [[nodiscard]] bool saveModelFile(const std::string& path);
    /// Asks the user for a file, writes the model and tells whether it was saved.
    void savePrm();
    /// A copy of this tool and those below beside it, with copies of the host's objects that hang
    /// below their nodes, in one undo step. Null for the root, or if nothing came into being. If a
    /// tool of the copy made other nodes, the user is told and the host's objects are left out.
    InstanceReference* clone();
    /// The items of the node's context menu.
    [[nodiscard]] std::vector<MenuItem> getMenu() const;
    /// Does what the menu's item of that command does; nothing for an unknown one. The reference
    /// may be destroyed by it.
    void runMenuCommand(std::int32_t command);

private:
    struct Departure;
    struct Pass;

    static void destroyChildren(Departure& top);
    void leaveTree(AdaptorInterface& adaptor, bool deleteScene);
    [[nodiscard]] std::int32_t applyToThis(const Tag& data, std::uint32_t stages, bool& goesDown);
    void applyInputs(const Tag& profile);
    [[nodiscard]] std::int32_t applyToNodes(const Tag& nodeInfo, std::uint32_t stages);
    [[nodiscard]] std::int32_t applyParent(SceneNode& node, const Tag& parent);
    void applySelection(const Tag& nodeInfo);
    void browse();
    PluginInstance* findOwner(const Tag& tag);
    void saveThis(Tag& out, std::uint32_t mask);
    Tag saveNodes(std::uint32_t mask);

    PluginInstance* instance_ = nullptr; // not owned, but ended with the reference
    bool inTree_ = true;
    bool isDeparting_ = false; // its children are gone and its entry in the log is open
    Watch* watches_ = nullptr; // not owned
};

} // namespace MVR
