#pragma once

#include "plugins/model/elements/element.h"

#include <string>
#include <vector>

namespace MVR {

/// The scene nodes of a tool, an element for each.
struct NodeListElement {
    static constexpr const char* kWord = "node";

    static void save(const ToolSaving& tool, Tag& nodeInfo);
    static void load(ToolLoading& tool, const Tag& nodeInfo);
    /// The names of the nodes in `nodeInfo`, in their order.
    [[nodiscard]] static std::vector<std::string> readNames(const Tag& nodeInfo);
};

} // namespace MVR
