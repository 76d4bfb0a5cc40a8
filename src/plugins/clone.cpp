#include "plugins/clone.h"

#include "core/contract/adaptor_interface.h"
#include "core/services/core_services.h"
#include "core/services/tool_list_changes.h"
#include "core/services/user_dialogs.h"
#include "instance/plugin_instance.h"
#include "plugins/contract/scene_node.h"
#include "plugins/instance_manager.h"
#include "plugins/instance_reference.h"

#include <algorithm>
#include <cstddef>
#include <unordered_set>

namespace MVR {
namespace {

constexpr std::size_t kNoParent = static_cast<std::size_t>(-1);

/// A node of the branch: those of its tools, then the host's objects below them, which are handles
/// of the entry at `parent` and come after it.
struct BranchNode {
    SceneNode* node;
    std::size_t parent;
};

/// The scene below some tools.
class Branch {
public:
    Branch(AdaptorInterface& adaptor, InstanceReference& top) {
        std::vector<InstanceReference*> references;
        top.collectInstances(references);
        for (InstanceReference* reference : references) {
            owners_.insert(reference->getInstance());
            for (SceneNode* node : adaptor.getNodes(reference->getInstance()))
                nodes_.push_back({node, kNoParent});
        }
        toolNodes_ = nodes_.size();
    }
    Branch(const Branch&) = delete;
    Branch& operator=(const Branch&) = delete;
    /// Gives the handles back, last first, so that none outlives the one that returned it.
    ~Branch() {
        for (; nodes_.size() > toolNodes_; nodes_.pop_back())
            nodes_[nodes_.back().parent].node->release(nodes_.back().node);
    }

    /// Those of the tools; after `collectHostObjects` all.
    [[nodiscard]] std::size_t size() const { return nodes_.size(); }
    [[nodiscard]] std::size_t toolNodeCount() const { return toolNodes_; }
    [[nodiscard]] const BranchNode& operator[](std::size_t index) const { return nodes_[index]; }
    [[nodiscard]] bool owns(const SceneNode& node) const {
        return node.getOwner() != nullptr && owners_.count(node.getOwner()) != 0;
    }

    /// Appends what is below the nodes, at any depth, and belongs to no tool of the branch.
    void collectHostObjects() {
        for (std::size_t i = 0; i < nodes_.size(); ++i) {
            const std::int32_t count = nodes_[i].node->getChildCount();
            for (std::int32_t j = 0; j < count; ++j) {
                SceneNode* const child = nodes_[i].node->getChild(j);
                if (child != nullptr && owns(*child))
                    nodes_[i].node->release(child);
                else if (child != nullptr)
                    nodes_.push_back({child, i});
            }
        }
    }

private:
    std::vector<BranchNode> nodes_;
    std::size_t toolNodes_ = 0;
    std::unordered_set<const CInterface*> owners_;
};

/// Makes the copies' nodes children of the outer parents of the source's nodes.
void copyOuterParents(const Branch& source, const Branch& copy) {
    const std::size_t count = std::min(source.toolNodeCount(), copy.toolNodeCount());
    for (std::size_t i = 0; i < count; ++i) {
        SceneNode& node = *source[i].node;
        SceneNode* const parent = node.getParent();
        if (parent == nullptr)
            continue;
        if (!source.owns(*parent))
            copy[i].node->setParent(parent);
        node.release(parent);
    }
}

/// Copies the source's host objects below the corresponding nodes of the copy.
void copyHostObjects(const Branch& source, const Branch& copy) {
    std::vector<SceneNode*> copies;
    copies.reserve(source.size());
    for (std::size_t i = 0; i < copy.toolNodeCount(); ++i)
        copies.push_back(copy[i].node);
    for (std::size_t i = copies.size(); i < source.size(); ++i)
        copies.push_back(source[i].node->duplicate(0));
    for (std::size_t i = source.toolNodeCount(); i < source.size(); ++i)
        if (copies[i] != nullptr && copies[source[i].parent] != nullptr)
            copies[i]->setParent(copies[source[i].parent]);
    for (std::size_t i = source.size(); i-- > source.toolNodeCount();)
        if (copies[i] != nullptr)
            source[i].node->release(copies[i]);
}

} // namespace

InstanceReference* cloneTool(InstanceReference& source) {
    CoreServices& services = *source.getServices();
    const ToolListChanges::Scope change(services.getToolListChanges());
    AdaptorInterface& adaptor = *services.getAdaptor();
    // Otherwise the host's objects would be steps of their own.
    adaptor.beginUndo("Clone Oskel Tool");
    Tag data;
    (void)source.save(data, SaveMask::kClone);
    const InstanceReference::Watch watch(&source); // a tool in the making may destroy it
    InstanceReference* const made =
        services.getTree().create(data, source.getParentReference(), true);
    if (made != nullptr && watch.get() != nullptr) {
        Branch original(adaptor, source);
        const Branch copy(adaptor, *made);
        original.collectHostObjects();
        copyOuterParents(original, copy);
        if (copy.toolNodeCount() == original.toolNodeCount())
            copyHostObjects(original, copy);
        else
            services.getDialogs().ask("Primitive node count mismatch!", "", Platform::kButtonsOk);
    }
    adaptor.endUndo();
    return made;
}

} // namespace MVR
