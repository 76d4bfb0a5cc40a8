#pragma once

#include "data/sdk/tag.h"
#include "plugins/model/elements/element.h"

#include <string>
#include <unordered_map>

namespace MVR {

class CInterface;

/// The parent of a scene node: a node of this tool or another, or nothing. An element whose parent
/// isn't there is written again as long as the node has the parent that it had when it was read.
class NodeParentElement {
public:
    static constexpr const char* kWord = "parent";

    static void save(const NodeSaving& saved, Tag& out);
    static void load(NodeLoading& loaded, const Tag& data);

private:
    /// A parent, to be compared only: it may be gone.
    struct Parent {
        bool isRoot = true;
        const CInterface* owner = nullptr;
        std::string name; // within its owner; in the host if it has none

        bool operator==(const Parent& other) const = default;
    };
    struct Missing {
        Tag element;
        Parent instead;
    };

    static Parent parentOf(SceneNode& node);

    std::unordered_map<std::string, Missing> missing_; // by the name of the node
};

} // namespace MVR
