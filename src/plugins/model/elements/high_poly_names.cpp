#include "plugins/model/elements/high_poly_names.h"

#include "core/base/sdk/log.h"
#include "core/contract/adaptor_interface.h"
#include "core/services/core_services.h"
#include "instance/plugin_instance.h"
#include "plugins/contract/scene_node.h"
#include "plugins/instance_reference.h"
#include "plugins/model/elements/node_link.h"
#include "plugins/model/model_place.h"
#include "plugins/model_parts.h"

namespace MVR {

void HighPolyNames::save(const NodeSaving& saved, Tag& out) {
    bool hasName = false;
    for (const std::string& name : saved.node.getHighPolyNames()) {
        if (name.empty())
            continue;
        out.addChild(Tag::element(kWord, name));
        hasName = true;
    }
    const auto& read = saved.tool.reference.getModelParts().read<HighPolyNames>().read_;
    const auto found = read.find(saved.node.getName());
    if (hasName || found == read.end())
        return;
    for (const Tag& tag : found->second)
        out.addChild(tag);
}

void HighPolyNames::load(NodeLoading& loaded, const Tag& data) {
    const ToolLoading& tool = loaded.tool;
    SceneNode& node = loaded.node;
    for (std::int32_t i = 0; i < data.childCount(); ++i) {
        const Tag& entry = data.child(i);
        if (!entry.hasName(kWord))
            continue;
        tool.reference.getModelParts().get<HighPolyNames>().read_[node.getName()].push_back(entry);
        node.getHighPolyNames().push_back(entry.value());
        SceneNode* const highPoly = tool.reference.findHighPolyNode(entry.value());
        if (highPoly == nullptr)
            continue;
        tool.instance.getServices().getAdaptor()->redraw();
        Log(Log::Notice).write("Parenting " + highPoly->getName() + " to " + node.getName());
        if (!hangBelow(*highPoly, node))
            tool.place.log("hpnode of node " + node.getName(),
                           "the node hangs below " + highPoly->getName());
    }
}

} // namespace MVR
