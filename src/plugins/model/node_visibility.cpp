#include "plugins/model/node_visibility.h"

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
    GUI::TreeNode::walk(
        top,
        [&visit](GUI::TreeNode& each) {
            auto& reference = static_cast<InstanceReference&>(each);
            if (CoreServices* const core = reference.getServices())
                for (SceneNode* node : core->getAdaptor()->getNodes(reference.getInstance()))
                    visit(*node);
            return false;
        });
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
