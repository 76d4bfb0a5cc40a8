#pragma once

#include "data/sdk/tag.h"
#include "plugins/model/elements/element.h"

namespace MVR {

/// What the tool itself adds, in any form. Only an element of this word is given back to it.
struct CustomDataElement {
    static constexpr const char* kWord = "customdata";

    static void save(const ToolSaving& tool, Tag& out);
    static void load(ToolLoading& tool, const Tag& data);
};

} // namespace MVR
