#include "plugins/model/elements/node_selection.h"

#include "core/base/border.h"
#include "core/base/sdk/log.h"
#include "instance/plugin_instance.h"
#include "plugins/contract/extension_ids.h"
#include "plugins/contract/scene_node.h"
#include "plugins/libraries/plugin.h"
#include "plugins/model/elements/node_link.h"
#include "plugins/model_parts.h"

namespace MVR {
namespace {

constexpr const char* kModelTool = "PRM"; // the kind of tool that a model's selection is saved with

} // namespace

void NodeSelection::save(const ToolSaving& tool, Tag& nodeInfo) {
    if (tool.instance.getPlugin()->getName() != kModelTool)
        return;
    const NodeSelection& selection = tool.reference.getModelParts().read<NodeSelection>();
    for (const Group& group : selection.groups_) {
        const InstanceReference* const owner = group.owner.get();
        if (owner == nullptr)
            continue;
        for (const std::string& node : group.nodes) {
            Tag& tag = nodeInfo.addChild(Tag::element(kWord, node));
            tag.attributeRef(kOtherTool) =
                owner == &tool.reference ? "" : owner->getInstance()->getName();
        }
    }
    tool.behind->add(selection.missing_);
}

void NodeSelection::load(ToolLoading& tool, const Tag& nodeInfo) {
    Log entry("setting node parent", Log::Notice);
    tool.isBranchDone = true;
    NodeSelection& selection = tool.reference.getModelParts().get<NodeSelection>();
    selection.groups_.clear();
    selection.missing_.clear();
    std::vector<std::int32_t> selected; // places in nodeInfo
    for (std::int32_t i = 0; i < nodeInfo.childCount(); ++i)
        if (nodeInfo.child(i).hasName(kWord))
            selected.push_back(i);
    for (const std::int32_t place : selected) {
        const Tag& tag = nodeInfo.child(place);
        InstanceReference* const owner = findLinkedTool(tool, tag);
        if (owner == nullptr) {
            entry.write("external", "Error: External instance not found", Log::OwnLevel);
            selection.missing_.keep(place, tag);
            continue;
        }
        entry.write("external instance", owner->getInstance()->getName(), Log::OwnLevel);
        SceneNode* const node = findLinkedNode(tool, *owner, tag.value(), kWord, entry);
        if (node == nullptr) {
            selection.missing_.keep(place, tag);
            continue;
        }
        (void)Border::callNode(kWord, [&] {
            if (place == selected.front())
                node->extend(NodeCommand::kOpenSelection, 0);
            node->select();
            if (place == selected.back())
                node->extend(NodeCommand::kCloseSelection, 0);
        });
        selection.add(*owner, node->getName());
    }
}

void NodeSelection::add(InstanceReference& owner, const std::string& node) {
    for (Group& group : groups_)
        if (group.owner.get() == &owner)
            return group.nodes.push_back(node);
    groups_.push_back({InstanceReference::Watch(&owner), {node}});
}

} // namespace MVR
