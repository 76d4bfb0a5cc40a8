// The words by which a program finds the tools in a tag tree of a model or a scene.
#pragma once

#include "data/sdk/tag.h"

#include <string>

namespace MVR::ModelWord {

/// The element of a whole tree; its children are the tools.
constexpr const char* kTree = "MVR";
/// The element of one tool, with those below it as children of the same name.
constexpr const char* kTool = "MVR_Plugin";
/// In kTool: the kind of tool.
constexpr const char* kType = "type";
/// May stand in the place of kType.
constexpr const char* kOldType = "pluginname";
/// In kTool: the tool's name.
constexpr const char* kName = "name";
/// In kTool: its bindings, an element kProfileElement (see "unidevice/sdk/profile_managers.h").
constexpr const char* kInputProfile = "inputprofile";

/// The kind of the tool whose element kTool is `tool`; "" if it names none.
inline const std::string& typeOf(const Tag& tool) {
    const std::string& type = tool.child(kType).value();
    return type.empty() ? tool.child(kOldType).value() : type;
}

} // namespace MVR::ModelWord
