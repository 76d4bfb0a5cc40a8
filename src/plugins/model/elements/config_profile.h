#pragma once

#include "data/sdk/tag.h"
#include "instance/plugin_instance.h"
#include "plugins/model/elements/element.h"

namespace MVR {

/// The values of the tool's panel.
struct ConfigProfileElement {
    static constexpr const char* kWord = "configprofile";

    static void save(const ToolSaving& tool, Tag& out) {
        out.addChild(Tag::element(kWord)).addChild(tool.instance.getConfigProfile(""));
    }
    static void load(ToolLoading& tool, const Tag& data) {
        if (const Tag& profile = data.child(kWord).child(0); !profile.isEmpty())
            tool.instance.applyConfigProfile(profile);
    }
};

} // namespace MVR
