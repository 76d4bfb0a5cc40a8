#pragma once

#include "data/tag.h"
#include "stage/tool_plan.h"

#include <functional>
#include <string>
#include <vector>

namespace Stage {

/// A tool as a configuration of the core, or a model, describes it.
struct ListedTool {
    ToolPlan plan;                  ///< type, name and what is bound
    std::vector<std::string> nodes; ///< the names of its nodes, within the tool
};

/// The tools of an element "MVR" or "MVR_Plugin", each before those below it.
std::vector<ListedTool> listTools(const MVR::Tag& configuration);

/// Puts back the bindings of a tool to controls that aren't there now: the core doesn't know them,
/// but they are part of the scene. `tool` is one of the elements "MVR_Plugin".
void keepBindings(MVR::Tag& tool, const std::vector<Binding>& bindings);

/// Calls `call` with each element "MVR_Plugin", in the order of listTools().
void forEachTool(MVR::Tag& configuration, const std::function<void(MVR::Tag& tool)>& call);

} // namespace Stage
