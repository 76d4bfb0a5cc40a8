#include "stage/session.h"

#include "core/setting_ids.h"
#include "plugins/c_interface.h"
#include "unidevice/property.h"

#include <utility>

namespace Stage {

namespace {

std::string describe(const Binding& binding) {
    std::string text = "\"" + binding.property + "\" can't be driven by " + binding.device;
    if (binding.deviceIndex != 0) {
        text += "#" + std::to_string(binding.deviceIndex);
    }
    return text + ":" + binding.type + ":" + std::to_string(binding.index) +
           ": there is no such control (mirvane-stage devices lists what there is)";
}

} // namespace

bool Session::open(const InstallValues& values, std::string& error) {
    close();
    const std::string path = findCore(values.core);
    if (path.empty()) {
        error = values.core.empty()
                    ? "the core library isn't in ../lib/mirvane beside this program; name it with "
                      "--core or MIRVANE_CORE"
                    : "there is no core library at " + values.core;
        return false;
    }
    if (!installValues_.write(values, path, error) || !library_.load(path, error)) {
        return false;
    }
    core_ = library_.attach(adaptor);
    if (core_ == nullptr) {
        error = "the core at " + path + " refused to attach";
        return false;
    }
    // Nobody is there to answer a box.
    const bool isSilent = true;
    core_->setProperty(MVR::Setting::kSilentMode, &isSilent);
    return true;
}

void Session::close() {
    if (core_ == nullptr) {
        return;
    }
    // Objects in the undo list may point into tools, and are the core's own code.
    undo.clear();
    tools_.clear();
    core_->deleteAllInstances();
    library_.detach(std::exchange(core_, nullptr));
}

const PlacedTool* Session::place(const ToolPlan& plan, std::string& error) {
    const std::size_t entriesBefore = undo.getUndoCount();
    (void)adaptor.takeNewTools();
    core_->loadConfiguration(toConfiguration(plan));
    // A tool that came into being left an undo step; one that failed took its own back.
    if (undo.getUndoCount() == entriesBefore) {
        error = "the tool \"" + plan.type +
                "\" can't be made (mirvane-stage tools lists what there is)";
        return nullptr;
    }
    const std::vector<MVR::CInterface*> created = adaptor.takeNewTools();
    MVR::CInterface* access = created.empty() ? nullptr : created.front();
    tools_.push_back(std::make_unique<PlacedTool>(PlacedTool{plan, access}));
    return tools_.back().get();
}

bool Session::checkBindings(const PlacedTool& tool, std::string& error) const {
    if (tool.access == nullptr) {
        return true;
    }
    for (const Binding& binding : tool.plan.bindings) {
        const UniDevice::Property* property = tool.access->findProperty(binding.property);
        if (property == nullptr) {
            error = "\"" + tool.plan.type + "\" has no property \"" + binding.property + "\"";
        } else if (property->control == nullptr) {
            error = describe(binding);
        } else {
            continue;
        }
        return false;
    }
    for (const Setting& setting : tool.plan.settings) {
        if (setting.property != "*" && tool.access->findProperty(setting.property) == nullptr) {
            error = "\"" + tool.plan.type + "\" has no property \"" + setting.property + "\"";
            return false;
        }
    }
    return true;
}

std::vector<UniDevice::Property*> Session::findProperties(const Setting& setting) const {
    std::vector<UniDevice::Property*> properties;
    for (const auto& tool : tools_) {
        if (tool->access == nullptr || !tool->plan.isMeantBy(setting)) {
            continue;
        }
        std::vector<std::string> names = {setting.property};
        if (setting.property == "*") {
            names.clear();
            for (const Binding& binding : tool->plan.bindings) {
                names.push_back(binding.property);
            }
        }
        for (const std::string& name : names) {
            if (UniDevice::Property* property = tool->access->findProperty(name)) {
                properties.push_back(property);
            }
        }
    }
    return properties;
}

} // namespace Stage
