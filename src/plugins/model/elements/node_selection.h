#pragma once

#include "data/kept_elements.h"
#include "plugins/instance_reference.h"
#include "plugins/model/elements/element.h"

#include <string>
#include <vector>

namespace MVR {

/// The scene nodes that a model selects, an element for each.
class NodeSelection {
public:
    static constexpr const char* kWord = "select";

    static void save(const ToolSaving& tool, Tag& nodeInfo);
    static void load(ToolLoading& tool, const Tag& nodeInfo);

private:
    /// Nodes of one tool.
    struct Group {
        InstanceReference::Watch owner;
        std::vector<std::string> nodes;
    };

    void add(InstanceReference& owner, const std::string& node);

    std::vector<Group> groups_;
    KeptElements missing_; // those whose node wasn't there
};

} // namespace MVR
