#include "plugins/model/elements/node_link.h"

#include "core/base/sdk/log.h"
#include "data/sdk/tag.h"
#include "instance/plugin_instance.h"
#include "plugins/contract/scene_node.h"
#include "plugins/model/instance_index.h"
#include "plugins/model/model_place.h"

#include <vector>

namespace MVR {
namespace {

/// Returns true if `node` is `wanted` or below it, at any depth.
bool isAtOrBelow(SceneNode& node, SceneNode& wanted) {
    std::vector<SceneNode*> way{&node}; // each returned the next, which is a handle
    bool isFound = false;
    while (way.back() != nullptr && !isFound) {
        isFound = way.back()->isSameNode(&wanted);
        way.push_back(isFound ? nullptr : way.back()->getParent());
    }
    for (way.pop_back(); way.size() > 1; way.pop_back())
        way[way.size() - 2]->release(way.back());
    return isFound;
}

} // namespace

InstanceReference* findLinkedTool(const ToolLoading& tool, const Tag& link) {
    const std::string other = link.attribute(kOtherTool);
    if (other.empty())
        return &tool.reference;
    InstanceReference* const owner = tool.index->find(tool.reference, other);
    if (owner == nullptr || owner->getInstance() == nullptr) {
        tool.place.log(link.name() + " " + link.value(), "there is no tool " + other);
        return nullptr;
    }
    return owner;
}

SceneNode* findLinkedNode(const ToolLoading& tool, InstanceReference& owner,
                          const std::string& name, const std::string& element, Log& entry) {
    SceneNode* const node = owner.getInstance()->createNode(name);
    if (node != nullptr)
        return node;
    entry.write("Error: Unable to find node with name", name, Log::Error);
    entry.write("source", owner.getInstance()->getName(), Log::Error);
    tool.place.log(element, "the tool " + owner.getInstanceName() + " has no node " + name);
    return nullptr;
}

bool hangBelow(SceneNode& node, SceneNode& parent) {
    // Nothing is below a node without children, and most have none when they get their parent.
    if (node.isSameNode(&parent) || (node.getChildCount() > 0 && isAtOrBelow(parent, node)))
        return false;
    node.setParent(&parent);
    return true;
}

} // namespace MVR
