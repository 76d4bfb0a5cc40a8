#pragma once

#include "data/sdk/tag.h"
#include "instance/plugin_instance.h"
#include "plugins/contract/model_words.h"
#include "plugins/model/elements/element.h"
#include "plugins/save_mask.h"

namespace MVR {

/// The bindings of the tool's input properties. A binding to a tool names it as the data does:
/// among the tools that are made together, that finds the one that comes from there, whatever its
/// name is now.
struct InputProfileElement {
    static constexpr const char* kWord = ModelWord::kInputProfile;

    static void save(const ToolSaving& tool, Tag& out) {
        const bool isExact = (tool.mask & SaveMask::kExact) != 0;
        out.addChild(Tag::element(kWord)).addChild(tool.instance.getInputProfile("", isExact));
    }
    static void load(ToolLoading& tool, const Tag& data);
};

} // namespace MVR
