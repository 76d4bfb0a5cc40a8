#include "plugins/model/elements/node_list.h"

#include "core/base/sdk/log.h"
#include "core/contract/adaptor_interface.h"
#include "core/services/core_services.h"
#include "data/sdk/tag.h"
#include "instance/plugin_instance.h"
#include "plugins/contract/c_mesh.h"
#include "plugins/contract/scene_node.h"
#include "plugins/instance_reference.h"
#include "plugins/model/elements/high_poly_names.h"
#include "plugins/model/elements/table.h"
#include "plugins/model/elements/unknown_elements.h"
#include "plugins/model/model_place.h"
#include "plugins/model_parts.h"

namespace MVR {
namespace {

/// Returns the node of this name, which it makes if the scene doesn't have it; null if the host
/// can't.
SceneNode* getOrCreateNode(PluginInstance& instance, const std::string& name) {
    if (SceneNode* const node = instance.createNode(name))
        return node;
    CMesh mesh;
    return instance.createNode(name, 0, reinterpret_cast<std::intptr_t>(&mesh), 0);
}

/// Returns what `mask` lets through of the element of a node.
Tag filter(const Tag& node, std::uint32_t mask) {
    Tag filtered = node;
    for (std::int32_t i = 0; i < node.childCount(); ++i)
        if (!isWrittenOfNode(node.child(i).name(), mask))
            (void)filtered.removeChild(node.child(i));
    return filtered;
}

} // namespace

void NodeListElement::save(const ToolSaving& tool, Tag& nodeInfo) {
    AdaptorInterface& adaptor = *tool.instance.getServices().getAdaptor();
    const UnknownElements& unknown = tool.reference.getModelParts().read<UnknownElements>();
    const InstanceReference::Watch alive(&tool.reference); // the host may end it when it is asked
    for (SceneNode* node : adaptor.getNodes(&tool.instance)) {
        if (alive.get() == nullptr)
            return;
        Tag& tag = nodeInfo.addChild(Tag::element(kWord));
        const std::string name = node->getName();
        tag.attributeRef(kNameAttribute) = name;
        saveNode({tool, *node}, tag);
        unknown.writeToNode(name, tag);
    }
    if (alive.get() != nullptr)
        tool.reference.getModelParts().read<NodeListElement>().addMissing(tool, nodeInfo);
}

void NodeListElement::addMissing(const ToolSaving& tool, const Tag& nodeInfo) const {
    // Without those beside its saved block a tool isn't made; a new one never had them.
    if ((tool.mask & SaveMask::kSavedBlock) != 0 && !isOfSavedTool_)
        return;
    if (missing_.isEmpty())
        return;
    const std::vector<std::string> names = readNames(nodeInfo);
    const std::unordered_set<std::string> present(names.begin(), names.end());
    tool.behind->add(missing_, [&](const Tag& node) {
        return present.count(node.attribute(kNameAttribute)) == 0 ? filter(node, tool.mask) : Tag();
    });
}

void NodeListElement::load(ToolLoading& tool, const Tag& nodeInfo) {
    Log entry("Traversing detected nodes", Log::Notice);
    if (HighPolyNames* const names = tool.reference.getModelParts().find<HighPolyNames>())
        names->clear();
    if (NodeListElement* const list = tool.reference.getModelParts().find<NodeListElement>())
        list->missing_.clear();
    for (std::int32_t i = 0; i < nodeInfo.childCount(); ++i)
        if (nodeInfo.child(i).hasName(kWord))
            loadOne(tool, i, nodeInfo.child(i));
}

void NodeListElement::loadOne(ToolLoading& tool, std::int32_t place, const Tag& data) {
    const std::string name = data.attribute(kNameAttribute);
    SceneNode* const node = getOrCreateNode(tool.instance, name);
    if (node == nullptr) {
        NodeListElement& list = tool.reference.getModelParts().get<NodeListElement>();
        list.isOfSavedTool_ = tool.isSaved;
        list.missing_.keep(place, data);
        if (list.told_.insert(name).second) // each pass tries again
            tool.place.log("node " + name, "the host can't make it");
        return;
    }
    Log(Log::Notice).write("node found in instance", node->getName(), Log::OwnLevel);
    NodeLoading loaded{tool, *node};
    loadNode(loaded, data);
}

std::vector<std::string> NodeListElement::readNames(const Tag& nodeInfo) {
    std::vector<std::string> names;
    forEach(nodeInfo, [&names](const std::string& name, const Tag&) { names.push_back(name); });
    return names;
}

} // namespace MVR
