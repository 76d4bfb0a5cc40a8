#pragma once

#include "data/sdk/tag.h"
#include "plugins/contract/scene_node.h"
#include "plugins/model/elements/element.h"

namespace MVR {

/// Whether a scene node is visible.
struct NodeVisibleElement {
    static constexpr const char* kWord = "visible";

    static void save(const NodeSaving& saved, Tag& out) {
        out.addChild(Tag::element(kWord, saved.node.isVisible() ? "true" : "false"));
    }
    static void load(NodeLoading& loaded, const Tag& data) {
        const std::string& visible = data.child(kWord).value();
        if (visible == "false")
            loaded.node.hide();
        else if (visible == "true")
            loaded.node.show();
    }
};

} // namespace MVR
