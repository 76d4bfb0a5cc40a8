#pragma once

#include "data/sdk/tag.h"
#include "instance/plugin_instance.h"
#include "plugins/contract/model_words.h"
#include "plugins/model/elements/element.h"
#include "plugins/model/model_place.h"
#include "plugins/save_mask.h"

#include <string>

namespace MVR {

/// The bindings of the tool's input properties.
struct InputProfileElement {
    static constexpr const char* kWord = ModelWord::kInputProfile;

    static void save(const ToolSaving& tool, Tag& out) {
        const bool isExact = (tool.mask & SaveMask::kExact) != 0;
        out.addChild(Tag::element(kWord)).addChild(tool.instance.getInputProfile("", isExact));
    }
    static void load(ToolLoading& tool, const Tag& data) {
        const std::int32_t missing = tool.instance.applyInputProfile(data.child(kWord).child(0));
        if (missing > 0 && missing != PluginInstance::kNoProfile)
            tool.place.log(kWord, "controls that aren't there: " + std::to_string(missing));
    }
};

} // namespace MVR
