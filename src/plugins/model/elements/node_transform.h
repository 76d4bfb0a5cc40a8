#pragma once

#include "plugins/model/elements/element.h"

namespace MVR {

/// A scene node's transform in world space at the host's time; not written if it has none. A
/// transform that holds nothing usable leaves the node as it was.
struct NodeTransformElement {
    static constexpr const char* kWord = "transform";

    static void save(const NodeSaving& saved, Tag& out);
    static void load(NodeLoading& loaded, const Tag& data);
};

} // namespace MVR
