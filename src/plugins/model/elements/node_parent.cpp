#include "plugins/model/elements/node_parent.h"

#include "core/base/error_codes.h"
#include "core/base/sdk/log.h"
#include "data/sdk/tag.h"
#include "instance/plugin_instance.h"
#include "plugins/contract/scene_node.h"
#include "plugins/instance_reference.h"
#include "plugins/model/elements/node_link.h"
#include "plugins/model/model_place.h"

#include <string>
#include <utility>

namespace MVR {

void NodeParentElement::save(const NodeSaving& saved, Tag& out) {
    SceneNode& node = saved.node;
    SceneNode* const parent = node.getParent();
    if (parent == nullptr) {
        out.addChild(Tag::element(kWord));
        return;
    }
    Tag tag = Tag::element(kWord);
    // Every CInterface is a tool of a core.
    const auto* const owner = static_cast<const PluginInstance*>(parent->getOwner());
    if (owner != nullptr && owner->isInTree()) {
        tag = Tag::element(kWord, parent->getName());
        if (owner != &saved.tool.instance)
            tag.attributeRef(kOtherTool) = owner->getName();
    } else if (owner != nullptr) {
        Log entry("The specified node's parent is not included in the list", Log::Notice);
        entry.write("node name", node.getName(), Log::OwnLevel);
        entry.write("parent name", parent->getName(), Log::OwnLevel);
        entry.write("parent owner name", owner->getName(), Log::OwnLevel);
    }
    node.release(parent);
    out.addChild(std::move(tag));
}

void NodeParentElement::load(NodeLoading& loaded, const Tag& data) {
    Log entry("setting node parent", Log::Notice);
    const Tag& parent = data.child(kWord);
    if (parent.isEmpty())
        return;
    SceneNode& node = loaded.node;
    const std::string& name = parent.value();
    if (name.empty())
        return node.setParent(nullptr);
    entry.write("parent tag found", name, Log::OwnLevel);
    ToolLoading& tool = loaded.tool;
    InstanceReference* const owner = findLinkedTool(tool, parent);
    if (owner == nullptr) {
        entry.write("Error: External instance name was not found", Log::Error);
        tool.code = reportCode(Codes::kInvalidData);
        return;
    }
    entry.write("external parent instance", owner->getInstance()->getName(), Log::OwnLevel);
    const std::string element = "parent of node " + node.getName();
    SceneNode* const parentNode = findLinkedNode(tool, *owner, name, element, entry);
    if (parentNode == nullptr)
        tool.code = reportCode(Codes::kInvalidData);
    else if (!hangBelow(node, *parentNode))
        tool.place.log(element, "the node " + name + " hangs below it");
}

} // namespace MVR
