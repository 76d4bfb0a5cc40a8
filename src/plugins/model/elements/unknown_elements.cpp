#include "plugins/model/elements/unknown_elements.h"

#include "plugins/contract/model_words.h"
#include "plugins/model/elements/node_info.h"
#include "plugins/model/elements/node_list.h"
#include "plugins/model/elements/table.h"
#include "plugins/model_parts.h"

#include <utility>

namespace MVR {

void UnknownElements::read(const Tag& data, ModelParts& parts) {
    UnknownElements unknown;
    unknown.inTool_.keepUnknown(data, [](const Tag& each) {
        return each.hasName(ModelWord::kTool) || isElementOfTool(each.name());
    });
    const Tag& nodeInfo = data.child(NodeInfoElement::kWord);
    unknown.inNodeInfo_.keepUnknown(
        nodeInfo, [](const Tag& each) { return isElementOfNodeInfo(each.name()); });
    NodeListElement::forEach(nodeInfo, [&unknown](const std::string& name, const Tag& node) {
        KeptElements kept;
        kept.keepUnknown(node, [](const Tag& each) { return isElementOfNode(each.name()); });
        if (!kept.isEmpty())
            unknown.inNodes_[name] = std::move(kept);
    });
    if (!unknown.isEmpty())
        parts.get<UnknownElements>() = std::move(unknown);
}

void UnknownElements::readTree(const Tag& tree, ModelParts& parts) {
    parts.get<UnknownElements>().inTool_.keepUnknown(
        tree, [](const Tag& each) { return each.hasName(ModelWord::kTool); });
}

void UnknownElements::clear(ModelParts& parts) {
    if (UnknownElements* const unknown = parts.find<UnknownElements>())
        *unknown = {};
}

void UnknownElements::writeToNode(const std::string& name, Tag& node) const {
    if (const auto found = inNodes_.find(name); found != inNodes_.end())
        found->second.writeTo(node);
}

} // namespace MVR
