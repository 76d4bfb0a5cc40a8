#include "stage/takes/input_log.h"

#include "plugins/contract/c_interface.h"
#include "stage/base/text.h"
#include "stage/host/session.h"
#include "unidevice/sdk/control.h"
#include "unidevice/sdk/property.h"

namespace Stage {

InputLog::InputLog(const Session& session) {
    for (const auto& tool : session.getTools()) {
        if (tool->plan.isAside)
            continue;
        for (const Binding& binding : tool->plan.bindings) {
            properties_.push_back(tool->access->findProperty(binding.property));
            table_ += "," + quoted(tool->plan.name + "/" + binding.property);
        }
    }
    table_ += "\n";
}

void InputLog::addFrame(double time) {
    table_ += toText(time);
    for (const UniDevice::Property* property : properties_) {
        const UniDevice::Control* control = property != nullptr ? property->control : nullptr;
        table_ += "," + (control != nullptr ? toText(control->getValue()) : std::string());
    }
    table_ += "\n";
}

} // namespace Stage
