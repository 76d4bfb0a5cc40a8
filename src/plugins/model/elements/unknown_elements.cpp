#include "plugins/model/elements/unknown_elements.h"

#include "plugins/contract/model_words.h"
#include "plugins/model/elements/node_info.h"
#include "plugins/model/elements/node_list.h"
#include "plugins/model/elements/table.h"

namespace MVR {

void UnknownElements::read(const Tag& data) {
    inTool_.keepUnknown(data, [](const Tag& each) {
        return each.hasName(ModelWord::kTool) || isElementOfTool(each.name());
    });
    const Tag& nodeInfo = data.child(NodeInfoElement::kWord);
    inNodeInfo_.keepUnknown(
        nodeInfo, [](const Tag& each) { return isElementOfNodeInfo(each.name()); });
    NodeListElement::forEach(nodeInfo, [this](const std::string& name, const Tag& node) {
        KeptElements kept;
        kept.keepUnknown(node, [](const Tag& each) { return isElementOfNode(each.name()); });
        if (!kept.isEmpty())
            inNodes_[name] = std::move(kept);
    });
}

void UnknownElements::readTree(const Tag& tree) {
    inTool_.keepUnknown(
        tree, [](const Tag& each) { return each.hasName(ModelWord::kTool); });
}

void UnknownElements::clear() {
    inTool_.clear();
    inNodeInfo_.clear();
    inNodes_.clear();
}

void UnknownElements::writeToNode(const std::string& name, Tag& node) const {
    if (const auto found = inNodes_.find(name); found != inNodes_.end())
        found->second.writeTo(node);
}

} // namespace MVR
