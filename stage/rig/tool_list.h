#pragma once

#include "data/sdk/tag.h"
#include "stage/rig/tool_plan.h"

#include <functional>
#include <string>
#include <vector>

namespace Stage {

/// The properties that a profile binds to a control.
std::vector<Binding> listBindings(const MVR::Tag& profile);

/// Returns the tools of an element "MVR" or "MVR_Plugin", each before those below it, with type,
/// name and bindings.
std::vector<ToolPlan> listTools(const MVR::Tag& configuration);

/// An element "MVR_Plugin", without those below it.
ToolPlan listTool(const MVR::Tag& tool);

/// Calls `call` with each element "MVR_Plugin", in the order of listTools().
void forEachTool(const MVR::Tag& configuration,
                 const std::function<void(const MVR::Tag& tool)>& call);

} // namespace Stage
