#pragma once

#include "plugins/model/elements/element.h"

namespace MVR {

/// The parent of a scene node: a node of this tool or another, or nothing.
struct NodeParentElement {
    static constexpr const char* kWord = "parent";

    static void save(const NodeSaving& saved, Tag& out);
    static void load(NodeLoading& loaded, const Tag& data);
};

} // namespace MVR
