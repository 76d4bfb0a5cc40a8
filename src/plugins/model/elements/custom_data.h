#pragma once

#include "data/sdk/tag.h"
#include "instance/plugin_instance.h"
#include "plugins/model/elements/element.h"

#include <utility>

namespace MVR {

/// What the tool itself adds, in any form. The tool names the element; only one of this word is
/// given back to it.
struct CustomDataElement {
    static constexpr const char* kWord = "customdata";

    static void save(const ToolSaving& tool, Tag& out) {
        Tag own;
        tool.instance.getCustomData(own);
        out.addChild(std::move(own));
    }
    static void load(ToolLoading& tool, const Tag& data) {
        tool.instance.setCustomData(data.child(kWord));
    }
};

} // namespace MVR
