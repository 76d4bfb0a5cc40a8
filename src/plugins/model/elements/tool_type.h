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
    static constexpr const char* kOldWord = ModelWord::kOldType;

    static void save(const ToolSaving& tool, Tag& out) {
        out.addChild(Tag::element(kWord, tool.instance.getPlugin()->getName()));
    }
    static const std::string& read(const Tag& data) { return ModelWord::typeOf(data); }
};

} // namespace MVR
