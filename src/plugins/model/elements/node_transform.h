#pragma once

#include "plugins/model/elements/element.h"

namespace MVR {

/// Where a scene node stands in the world at the host's time; not written of one without a place.
/// A transform that holds nothing usable leaves the node as it was.
struct NodeTransformElement {
    static constexpr const char* kWord = "transform";

    static void save(const NodeSaving& saved, Tag& out);
    static void load(NodeLoading& loaded, const Tag& data);
};

} // namespace MVR
