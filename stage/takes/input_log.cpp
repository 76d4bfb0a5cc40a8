#include "stage/takes/input_log.h"

#include "core/contract/core_tools.h"
#include "plugins/contract/tool_identity.h"
#include "stage/base/text.h"
#include "stage/host/session.h"

namespace Stage {

InputLog::InputLog(const Session& session) : tree_(session.getTree()) {
    for (const auto& tool : session.getTools()) {
        if (tool->plan.isAside)
            continue;
        LoggedTool& logged = tools_.emplace_back();
        logged.name = MVR::getToolIdentity(*tool->access).name;
        for (const Binding& binding : tool->plan.bindings) {
            logged.properties.push_back(binding.property);
            table_ += "," + quoted(tool->plan.name + "/" + binding.property);
        }
    }
    table_ += "\n";
}

void InputLog::addFrame(double time) {
    table_ += toText(time);
    for (const LoggedTool& tool : tools_) {
        const std::vector<MVR::CoreToolInput> inputs = tree_.listInputs(tool.name);
        for (const std::string& property : tool.properties) {
            table_ += ",";
            for (const MVR::CoreToolInput& input : inputs)
                if (input.isBound && input.name == property)
                    table_ += toText(input.value);
        }
    }
    table_ += "\n";
}

} // namespace Stage
