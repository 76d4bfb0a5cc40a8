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

void loadOne(ToolLoading& tool, const std::string& name, const Tag& data) {
    SceneNode* const node = getOrCreateNode(tool.instance, name);
    if (node == nullptr)
        return tool.place.log("node " + name, "the host can't make it");
    Log(Log::Notice).write("node found in instance", node->getName(), Log::OwnLevel);
    NodeLoading loaded{tool, *node};
    loadNode(loaded, data);
}

} // namespace

void NodeListElement::save(const ToolSaving& tool, Tag& nodeInfo) {
    AdaptorInterface& adaptor = *tool.instance.getServices().getAdaptor();
    const UnknownElements& unknown = tool.reference.getModelParts().read<UnknownElements>();
    for (SceneNode* node : adaptor.getNodes(&tool.instance)) {
        Tag& tag = nodeInfo.addChild(Tag::element(kWord));
        const std::string name = node->getName();
        tag.attributeRef(kNameAttribute) = name;
        saveNode({tool, *node}, tag);
        unknown.writeToNode(name, tag);
    }
}

void NodeListElement::load(ToolLoading& tool, const Tag& nodeInfo) {
    Log entry("Traversing detected nodes", Log::Notice);
    if (HighPolyNames* const names = tool.reference.getModelParts().find<HighPolyNames>())
        names->clear();
    forEach(nodeInfo,
            [&tool](const std::string& name, const Tag& node) { loadOne(tool, name, node); });
}

std::vector<std::string> NodeListElement::readNames(const Tag& nodeInfo) {
    std::vector<std::string> names;
    forEach(nodeInfo, [&names](const std::string& name, const Tag&) { names.push_back(name); });
    return names;
}

} // namespace MVR
