#include "plugins/model/node_visibility.h"

#include "core/base/border.h"
#include "core/contract/adaptor_interface.h"
#include "core/services/core_services.h"
#include "instance/plugin_instance.h"
#include "plugins/contract/scene_node.h"
#include "plugins/instance_reference.h"

#include <cstdint>
#include <vector>

namespace MVR {
namespace {

void setVisible(SceneNode& node, bool visible) {
    if (VisibilityController* const controller = node.getVisibilityController(0.0))
        node.setVisibilityController(controller);
    else if (visible)
        node.show();
    else
        node.hide();
}

/// Handles what is below `top`, at any depth; objects that a tool owns stay as they are, with all
/// below.
void setVisibleBelow(SceneNode& top, bool visible) {
    struct Level {
        SceneNode* node;
        std::int32_t nextChild;
    };
    std::vector<Level> open{{&top, 0}}; // each but the first is a handle of the one before
    while (true) {
        Level& level = open.back();
        SceneNode* const node = level.node;
        if (level.nextChild < node->getChildCount()) {
            SceneNode* const child = node->getChild(level.nextChild++);
            if (child == nullptr)
                continue;
            if (child->getOwner() != nullptr) {
                node->release(child);
                continue;
            }
            setVisible(*child, visible);
            open.push_back({child, 0});
            continue;
        }
        open.pop_back();
        if (open.empty())
            return;
        open.back().node->release(node);
    }
}

template <class Visit>
void forEachNode(InstanceReference& top, Visit visit) {
    std::vector<InstanceReference*> references;
    top.collectInstances(references);
    // The host may end tools when it is asked.
    const std::vector<InstanceReference::Watch> tools(references.begin(), references.end());
    for (const InstanceReference::Watch& tool : tools) {
        CoreServices* const core = tool.get() != nullptr ? tool.get()->getServices() : nullptr;
        if (core == nullptr)
            continue;
        for (SceneNode* node : core->getAdaptor()->getNodes(tool.get()->getInstance()))
            if (tool.get() != nullptr)
                (void)Border::callNode("a change of its visibility", [&] { visit(*node); });
    }
}

} // namespace

void setOwnNodesVisible(InstanceReference& top, bool visible) {
    forEachNode(
        top, [visible](SceneNode& node) { setVisible(node, visible); });
}

void setHostNodesVisible(InstanceReference& top, bool visible) {
    forEachNode(
        top, [visible](SceneNode& node) { setVisibleBelow(node, visible); });
}

} // namespace MVR
