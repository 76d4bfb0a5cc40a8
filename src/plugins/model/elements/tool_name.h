#pragma once

#include "data/sdk/tag.h"
#include "instance/plugin_instance.h"
#include "plugins/contract/model_words.h"
#include "plugins/model/elements/element.h"

#include <string>

namespace MVR {

/// The tool's name.
struct NameElement {
    static constexpr const char* kWord = ModelWord::kName;

    static void save(const ToolSaving& tool, Tag& out) {
        out.addChild(Tag::element(kWord, tool.instance.getName()));
    }
    static const std::string& read(const Tag& data) { return data.child(kWord).value(); }
};

} // namespace MVR
