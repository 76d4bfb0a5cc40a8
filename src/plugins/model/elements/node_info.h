#pragma once

#include "core/base/sdk/log.h"
#include "data/kept_elements.h"
#include "data/sdk/tag.h"
#include "plugins/instance_reference.h"
#include "plugins/model/elements/element.h"
#include "plugins/model/elements/saved_block.h"
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
        KeptElements behind;
        tool.reference.getModelParts().read<UnknownElements>().addOfNodeInfo(behind);
        saveNodeInfo({tool.reference, tool.instance, tool.mask, &behind}, nodeInfo);
        behind.writeTo(nodeInfo);
    }
    static void load(ToolLoading& tool, const Tag& data) {
        Log(Log::Notice).write("Fetching node info tag");
        tool.isSaved = SavedBlockElement::isIn(data);
        if (const Tag& nodeInfo = data.child(kWord); !nodeInfo.isEmpty())
            loadNodeInfo(tool, nodeInfo);
    }
};

} // namespace MVR
