#include "plugins/model/elements/node_parent.h"

#include "core/base/error_codes.h"
#include "core/base/sdk/log.h"
#include "data/sdk/tag.h"
#include "instance/plugin_instance.h"
#include "plugins/contract/scene_node.h"
#include "plugins/instance_reference.h"
#include "plugins/model/elements/node_link.h"
#include "plugins/model/model_place.h"
#include "plugins/model_parts.h"

#include <string>
#include <utility>

namespace MVR {
namespace {

/// Returns the element of the parent that the node has.
Tag describe(const NodeSaving& saved) {
    SceneNode& node = saved.node;
    SceneNode* const parent = node.getParent();
    Tag tag = Tag::element(NodeParentElement::kWord);
    if (parent == nullptr)
        return tag;
    // Every CInterface is a tool of a core.
    const auto* const owner = static_cast<const PluginInstance*>(parent->getOwner());
    if (owner != nullptr && owner->isInTree()) {
        tag = Tag::element(NodeParentElement::kWord, parent->getName());
        if (owner != &saved.tool.instance)
            tag.attributeRef(kOtherTool) = owner->getName();
    } else if (owner != nullptr) {
        Log entry("The specified node's parent is not included in the list", Log::Notice);
        entry.write("node name", node.getName(), Log::OwnLevel);
        entry.write("parent name", parent->getName(), Log::OwnLevel);
        entry.write("parent owner name", owner->getName(), Log::OwnLevel);
    }
    node.release(parent);
    return tag;
}

/// Returns false if the node can't get the parent that the element names.
bool apply(NodeLoading& loaded, const Tag& parent, Log& entry) {
    SceneNode& node = loaded.node;
    const std::string& name = parent.value();
    if (name.empty()) {
        node.setParent(nullptr);
        return true;
    }
    entry.write("parent tag found", name, Log::OwnLevel);
    ToolLoading& tool = loaded.tool;
    InstanceReference* const owner = findLinkedTool(tool, parent);
    if (owner == nullptr) {
        entry.write("Error: External instance name was not found", Log::Error);
        tool.code = reportCode(Codes::kInvalidData);
        return false;
    }
    entry.write("external parent instance", owner->getInstance()->getName(), Log::OwnLevel);
    const std::string element = "parent of node " + node.getName();
    SceneNode* const parentNode = findLinkedNode(tool, *owner, name, element, entry);
    if (parentNode == nullptr) {
        tool.code = reportCode(Codes::kInvalidData);
        return false;
    }
    const bool isHung = hangBelow(node, *parentNode);
    if (!isHung)
        tool.place.log(element, "the node " + name + " hangs below it");
    return isHung;
}

} // namespace

void NodeParentElement::save(const NodeSaving& saved, Tag& out) {
    const auto& missing = saved.tool.reference.getModelParts().read<NodeParentElement>().missing_;
    const auto found = missing.find(saved.node.getName());
    const bool isMissing = found != missing.end() && found->second.instead == parentOf(saved.node);
    out.addChild(isMissing ? found->second.element : describe(saved));
}

void NodeParentElement::load(NodeLoading& loaded, const Tag& data) {
    Log entry("setting node parent", Log::Notice);
    const Tag& parent = data.child(kWord);
    if (parent.isEmpty())
        return;
    const std::string& name = loaded.node.getName();
    ModelParts& parts = loaded.tool.reference.getModelParts();
    if (!apply(loaded, parent, entry))
        parts.get<NodeParentElement>().missing_[name] = {parent, parentOf(loaded.node)};
    else if (NodeParentElement* const kept = parts.find<NodeParentElement>())
        kept->missing_.erase(name);
}

NodeParentElement::Parent NodeParentElement::parentOf(SceneNode& node) {
    SceneNode* const parent = node.getParent();
    if (parent == nullptr)
        return {};
    const CInterface* const owner = parent->getOwner();
    Parent found{false, owner, owner != nullptr ? parent->getName() : parent->getHostName()};
    node.release(parent);
    return found;
}

} // namespace MVR
