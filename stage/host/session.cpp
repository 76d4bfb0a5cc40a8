#include "stage/host/session.h"

#include "core/contract/setting_ids.h"
#include "plugins/contract/c_interface.h"
#include "stage/base/text.h"
#include "unidevice/sdk/property.h"

#include <unordered_map>
#include <unordered_set>
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

/// The core writes six digits of a number; a resimulation is to give the same bytes.
void writeExactSettings(MVR::Tag& tool, MVR::CInterface& access) {
    MVR::Tag& profile = tool.child("inputprofile").child("profile");
    for (std::int32_t i = 0; i < profile.childCount(); ++i) {
        MVR::Tag& tag = profile.child(i);
        const UniDevice::Property* property = access.findProperty(tag.attribute("name"));
        if (property == nullptr) {
            continue;
        }
        const std::pair<const char*, double> numbers[] = {{"multiplier", property->multiplier},
                                                          {"exponent", property->exponent},
                                                          {"deadzone", property->deadzone},
                                                          {"offset", property->offset}};
        for (const auto& [name, number] : numbers) {
            if (MVR::Tag& element = tag.child(name); element.childCount() > 0) {
                element.child(0).setName(toText(number));
            }
        }
    }
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
    saved_.clear();
    core_->deleteAllInstances();
    library_.detach(std::exchange(core_, nullptr));
}

/// The configuration tells names, but no object; the core asks for the nodes of each tool as it
/// writes it. Whether both tell of the same tools is seen by the names of the nodes.
bool Session::readTools(PresentTools& out, std::string& error) {
    std::unordered_set<MVR::CInterface*> known;
    adaptor.setNodesListener([&](MVR::CInterface* tool) {
        if (known.insert(tool).second) {
            out.access.push_back(tool);
        }
    });
    out.configuration = core_->getConfiguration();
    adaptor.setNodesListener({});
    out.tools = listTools(out.configuration);
    bool isSame = out.tools.size() == out.access.size();
    for (std::size_t i = 0; isSame && i < out.tools.size(); ++i) {
        std::vector<std::string> nodes;
        for (const MVR::SceneNode* node : adaptor.getNodes(out.access[i])) {
            nodes.push_back(node->getName());
        }
        isSame = nodes == out.tools[i].nodes;
    }
    if (!isSame) {
        error = "the core's configuration doesn't fit the tools whose nodes it asked for";
    }
    return isSame;
}

bool Session::openScene(const SceneData& data, std::string& error) {
    bringScene(data, scene, timeline);
    core_->loadConfiguration(data.configuration);
    undo.clear();
    (void)adaptor.takeNewTools();
    PresentTools present;
    if (!readTools(present, error)) {
        return false;
    }
    std::unordered_map<std::string, MVR::CInterface*> byName;
    for (std::size_t i = 0; i < present.tools.size(); ++i) {
        byName.emplace(present.tools[i].plan.name, present.access[i]);
    }
    error.clear();
    forEachTool(data.configuration, [&](const MVR::Tag& tag) {
        ToolPlan plan = listTool(tag).plan;
        const auto found = byName.find(plan.name);
        if (found == byName.end()) {
            error += (error.empty() ? "" : ", ") + ("\"" + plan.name + "\" of type \"") +
                     plan.type + "\"";
            return;
        }
        saved_.emplace(found->second, tag.child("inputprofile"));
        tools_.push_back(std::make_unique<PlacedTool>(PlacedTool{std::move(plan), found->second}));
        byName.erase(found);
    });
    if (!error.empty()) {
        error = "these tools of the scene can't be made: " + error;
    }
    return error.empty();
}

std::optional<std::vector<const PlacedTool*>> Session::adoptTools(std::string& error) {
    PresentTools present;
    if (!readTools(present, error)) {
        return std::nullopt;
    }
    std::unordered_set<const MVR::CInterface*> known;
    for (const auto& tool : tools_) {
        known.insert(tool->access);
    }
    std::vector<const PlacedTool*> adopted;
    for (std::size_t i = 0; i < present.tools.size(); ++i) {
        if (known.count(present.access[i]) == 0) {
            tools_.push_back(std::make_unique<PlacedTool>(
                PlacedTool{std::move(present.tools[i].plan), present.access[i]}));
            adopted.push_back(tools_.back().get());
        }
    }
    return adopted;
}

bool Session::saveScene(const std::string& path, std::string& error) {
    PresentTools present;
    if (!readTools(present, error)) {
        return false;
    }
    ToolNames names;
    for (std::size_t i = 0; i < present.tools.size(); ++i) {
        names.emplace(present.access[i], present.tools[i].plan.name);
    }
    std::size_t next = 0;
    forEachTool(present.configuration, [&](MVR::Tag& tool) {
        MVR::CInterface* access = present.access[next++];
        writeExactSettings(tool, *access);
        if (const auto saved = saved_.find(access); saved != saved_.end()) {
            keepBindings(tool.child("inputprofile"), saved->second);
        }
    });
    return writeSceneFile(path, takeScene(scene, timeline, names, std::move(present.configuration)),
                          error);
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
