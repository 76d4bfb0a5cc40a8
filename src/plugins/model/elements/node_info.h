#pragma once

#include "core/base/sdk/log.h"
#include "data/sdk/tag.h"
#include "plugins/instance_reference.h"
#include "plugins/model/elements/element.h"
#include "plugins/model/elements/table.h"
#include "plugins/model/elements/unknown_elements.h"
#include "plugins/model_parts.h"

namespace MVR {

/// All that is stored of a tool's scene nodes.
struct NodeInfoElement {
    static constexpr const char* kWord = "nodeinfo";

    static void save(const ToolSaving& tool, Tag& out) {
        Log entry("Creating node tag", Log::Notice);
        Tag& nodeInfo = out.addChild(Tag::element(kWord));
        saveNodeInfo(tool, nodeInfo);
        tool.reference.getModelParts().read<UnknownElements>().writeToNodeInfo(nodeInfo);
    }
    static void load(ToolLoading& tool, const Tag& data) {
        Log(Log::Notice).write("Fetching node info tag");
        if (const Tag& nodeInfo = data.child(kWord); !nodeInfo.isEmpty())
            loadNodeInfo(tool, nodeInfo);
    }
};

} // namespace MVR
