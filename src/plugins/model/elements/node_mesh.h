#pragma once

#include "plugins/model/elements/element.h"

namespace MVR {

/// A scene node's mesh; not written if it has none. A mesh that can't be read leaves the node as it
/// was.
struct NodeMeshElement {
    static constexpr const char* kWord = "CMesh";

    static void save(const NodeSaving& saved, Tag& out);
    static void load(NodeLoading& loaded, const Tag& data);
};

} // namespace MVR
