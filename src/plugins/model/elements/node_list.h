#pragma once

#include "data/kept_elements.h"
#include "data/sdk/tag.h"
#include "plugins/model/elements/element.h"

#include <cstdint>
#include <string>
#include <unordered_set>
#include <vector>

namespace MVR {

/// The scene nodes of a tool, an element for each.
class NodeListElement {
public:
    static constexpr const char* kWord = "node";
    static constexpr const char* kNameAttribute = "name";

    static void save(const ToolSaving& tool, Tag& nodeInfo);
    static void load(ToolLoading& tool, const Tag& nodeInfo);
    /// Returns the names of the nodes in `nodeInfo`, in their order.
    [[nodiscard]] static std::vector<std::string> readNames(const Tag& nodeInfo);
    /// Calls `visit(name, element)` for each node.
    template <class Visit>
    static void forEach(const Tag& nodeInfo, Visit visit) {
        for (std::int32_t i = 0; i < nodeInfo.childCount(); ++i)
            if (const Tag& node = nodeInfo.child(i); node.hasName(kWord))
                visit(node.attribute(kNameAttribute), node);
    }

private:
    static void loadOne(ToolLoading& tool, std::int32_t place, const Tag& data);
    void addMissing(const ToolSaving& tool, const Tag& nodeInfo) const;

    KeptElements missing_;                 // those that the host couldn't make
    std::unordered_set<std::string> told_; // their names
    bool isOfSavedTool_ = false;           // they stood beside a saved block
};

} // namespace MVR
