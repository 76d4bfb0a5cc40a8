#pragma once

#include "data/sdk/tag.h"
#include "plugins/model/elements/element.h"

#include <map>
#include <string>
#include <vector>

namespace MVR {

/// Which nodes of the detailed model are below a scene node, an element for each.
class HighPolyNames {
public:
    static constexpr const char* kWord = "hpnode";

    static void save(const NodeSaving& saved, Tag& out);
    static void load(NodeLoading& loaded, const Tag& data);
    /// Forgets what was read.
    void clear() { read_.clear(); }

private:
    // By the scene node's name. Written again if the node itself has no such names, for example
    // because the detailed model wasn't merged.
    std::map<std::string, std::vector<Tag>> read_;
};

} // namespace MVR
