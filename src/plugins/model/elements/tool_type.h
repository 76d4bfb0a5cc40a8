#pragma once

#include "data/sdk/tag.h"
#include "instance/plugin_instance.h"
#include "plugins/contract/model_words.h"
#include "plugins/libraries/plugin.h"
#include "plugins/model/elements/element.h"

#include <string>

namespace MVR {

/// The kind of tool.
struct TypeElement {
    static constexpr const char* kWord = ModelWord::kType;
    static constexpr const char* kOldWord = "pluginname"; ///< may be used instead

    static void save(const ToolSaving& tool, Tag& out) {
        out.addChild(Tag::element(kWord, tool.instance.getPlugin()->getName()));
    }
    static const std::string& read(const Tag& data) {
        const std::string& type = data.child(kWord).value();
        return type.empty() ? data.child(kOldWord).value() : type;
    }
};

} // namespace MVR
