#include "stage/host/session.h"

#include "core/contract/catalogue_words.h"
#include "core/contract/setting_ids.h"
#include "platform/sdk/files.h"
#include "plugins/contract/c_interface.h"
#include "plugins/contract/tool_identity.h"
#include "stage/base/nearest_name.h"

#include <algorithm>
#include <utility>

namespace Stage {

namespace {

/// Returns what names a control in a binding.
std::string nameOf(const std::string& device, std::int32_t deviceIndex, const std::string& type,
                   std::int32_t index) {
    return device + (deviceIndex != 0 ? "#" + std::to_string(deviceIndex) : "") + ":" + type + ":" +
           std::to_string(index);
}

std::vector<std::string> namesOf(const std::vector<MVR::CoreToolInput>& inputs) {
    std::vector<std::string> names;
    for (const MVR::CoreToolInput& input : inputs)
        names.push_back(input.name);
    return names;
}

std::string noProperty(const std::string& type, const std::string& property,
                       const std::vector<MVR::CoreToolInput>& inputs) {
    return "\"" + type + "\" has no property \"" + property + "\"" +
           askForNearest(property, namesOf(inputs));
}

const MVR::CoreToolInput* find(const std::vector<MVR::CoreToolInput>& inputs,
                               const std::string& name) {
    const auto found = std::find_if(inputs.begin(), inputs.end(),
                                    [&name](const auto& input) { return input.name == name; });
    return found != inputs.end() ? &*found : nullptr;
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
    if (!installValues_.write(values, path, error) || !library_.load(path, error))
        return false;
    if (values.isVerbose)
        adaptor.printLogAtEnd();
    core_ = library_.attach(adaptor);
    if (core_ == nullptr) {
        error = "the core at " + path + " refused to attach";
        return false;
    }
    tree_ = MVR::getTools(*core_);
    models_ = MVR::getModels(*core_);
    inputs_ = MVR::getInputs(*core_);
    faults_ = MVR::getFaults(*core_);
    takes_ = MVR::getTakes(*core_);
    if (tree_ == nullptr || models_ == nullptr || inputs_ == nullptr || faults_ == nullptr ||
        takes_ == nullptr) {
        error = "the core at " + path + " is older than this stage";
        close();
        return false;
    }
    adaptor.setFaults(faults_);
    // Nobody can answer a box.
    const bool isSilent = true;
    core_->setProperty(MVR::Setting::kSilentMode, &isSilent);
    return true;
}

void Session::close() {
    if (core_ == nullptr)
        return;
    // Objects in the undo list may point into tools, and their code is the core's.
    undo.clear();
    tools_.clear();
    core_->deleteAllInstances();
    adaptor.setFaults(nullptr);
    library_.detach(std::exchange(core_, nullptr));
}

void Session::openScene(const SceneData& data) {
    bringScene(data, scene, timeline);
    core_->loadConfiguration(data.configuration);
    undo.clear();
    (void)adoptTools();
}

std::vector<const PlacedTool*> Session::adoptTools() {
    std::vector<const PlacedTool*> adopted;
    for (const MVR::CoreTool& tool : tree_->list()) {
        const bool isKnown = std::any_of(tools_.begin(), tools_.end(), [&tool](const auto& known) {
            return known->access == tool.access;
        });
        if (isKnown)
            continue;
        ToolPlan plan;
        plan.type = tool.type;
        plan.name = tool.name;
        plan.bindings = listBindings(tree_->getBindings(tool.name));
        tools_.push_back(std::make_unique<PlacedTool>(PlacedTool{std::move(plan), tool.access}));
        adopted.push_back(tools_.back().get());
    }
    return adopted;
}

bool Session::saveScene(const std::string& path, std::string& error) {
    ToolNames names;
    for (const MVR::CoreTool& tool : tree_->list())
        names.emplace(tool.access, tool.name);
    MVR::Tag configuration = tree_->getExactConfiguration();
    return writeSceneFile(path, takeScene(scene, timeline, names, std::move(configuration)), error);
}

const PlacedTool* Session::place(const ToolPlan& plan, std::string& error) {
    std::string name;
    if (tree_->create(plan.type, plan.name, "", toProfile(plan), &name) != 0) {
        error = "the tool \"" + plan.type + "\" can't be created";
        for (const MVR::CoreFault& fault : faults_->list())
            error += ": " + fault.text;
        namespace Word = MVR::CatalogueWord;
        const MVR::Tag catalogue = models_->getCatalogue();
        std::vector<std::string> types;
        for (std::int32_t i = 0; i < catalogue.childCount(Word::kEntry); ++i)
            types.push_back(catalogue.child(Word::kEntry, i).child(Word::kType).value());
        if (std::find(types.begin(), types.end(), plan.type) == types.end())
            error += askForNearest(plan.type, types);
        error += " (mirvane-stage tools lists what there is)";
        return nullptr;
    }
    tools_.push_back(std::make_unique<PlacedTool>(PlacedTool{plan, tree_->find(name)}));
    return tools_.back().get();
}

bool Session::checkBindings(const PlacedTool& tool, std::string& error) const {
    const auto inputs = tree_->listInputs(MVR::getToolIdentity(*tool.access).name);
    for (const Binding& binding : tool.plan.bindings) {
        const MVR::CoreToolInput* input = find(inputs, binding.property);
        if (input == nullptr)
            error = noProperty(tool.plan.type, binding.property, inputs);
        else if (!input->isBound)
            error = noControl(binding);
        else
            continue;
        return false;
    }
    for (const Setting& setting : tool.plan.settings) {
        if (setting.property != "*" && find(inputs, setting.property) == nullptr) {
            error = noProperty(tool.plan.type, setting.property, inputs);
            return false;
        }
    }
    return true;
}

std::string Session::noControl(const Binding& binding) const {
    std::vector<std::string> controls;
    for (const MVR::CoreDevice& device : inputs_->list())
        for (const MVR::CoreControl& control : device.controls)
            controls.push_back(nameOf(device.name, device.index, control.type, control.index));
    const std::string name =
        nameOf(binding.device, binding.deviceIndex, binding.type, binding.index);
    return "\"" + binding.property + "\" can't be driven by " + name +
           ": there is no such control" + askForNearest(name, controls) +
           " (mirvane-stage devices lists what there is)";
}

std::string Session::noProperties(const Setting& setting) const {
    std::vector<std::string> names;
    for (const auto& tool : tools_) {
        if (tool->plan.isAside)
            continue;
        const std::string name = MVR::getToolIdentity(*tool->access).name;
        for (const std::string& property : namesOf(tree_->listInputs(name)))
            names.insert(names.end(), {property, name + "/" + property});
        names.push_back(name + "/*");
    }
    const std::string word = (setting.tool.empty() ? "" : setting.tool + "/") + setting.property;
    return "no tool has the property that \"" + setting.toText() + "\" is to change" +
           askForNearest(word, names);
}

std::string Session::noTool(const std::string& name) const {
    std::vector<std::string> names;
    for (const MVR::CoreTool& tool : tree_->list())
        names.push_back(tool.name);
    return "the scene has no tool named \"" + name + "\"" + askForNearest(name, names);
}

std::vector<std::string> Session::listDriverFaults() {
    std::vector<std::string> lines;
    for (const MVR::CoreDriver& driver : inputs_->listDrivers())
        if (!driver.fault.empty())
            lines.push_back(
                (driver.name.empty() ? MVR::Platform::foldPath(driver.library) : driver.name) +
                ": " + driver.fault);
    return lines;
}

std::vector<ToolProperty> Session::findProperties(const Setting& setting) const {
    std::vector<ToolProperty> properties;
    for (const auto& tool : tools_) {
        if (!tool->plan.isMeantBy(setting))
            continue;
        std::vector<std::string> names = {setting.property};
        if (setting.property == "*") {
            names.clear();
            for (const Binding& binding : tool->plan.bindings)
                names.push_back(binding.property);
        }
        const std::string toolName = MVR::getToolIdentity(*tool->access).name;
        const auto inputs = tree_->listInputs(toolName);
        for (const std::string& name : names)
            if (find(inputs, name) != nullptr)
                properties.push_back({toolName, name});
    }
    return properties;
}

} // namespace Stage
