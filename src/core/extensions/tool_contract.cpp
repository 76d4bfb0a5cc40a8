#include "core/extensions/tool_contract.h"

#include "core/base/error_codes.h"
#include "core/contract/adaptor_interface.h"
#include "core/extensions/tool_lookup.h"
#include "core/services/core_services.h"
#include "core/services/fault_list.h"
#include "core/services/tool_list_changes.h"
#include "data/writable_name.h"
#include "instance/plugin_instance.h"
#include "instance/stored_input.h"
#include "plugins/contract/model_words.h"
#include "plugins/instance_manager.h"
#include "plugins/instance_reference.h"
#include "plugins/libraries/library_manager.h"
#include "plugins/libraries/plugin.h"
#include "plugins/libraries/root_plugin.h"
#include "plugins/tree_control.h"
#include "unidevice/sdk/binding_words.h"
#include "unidevice/sdk/control.h"
#include "unidevice/sdk/profile_managers.h"

#include <algorithm>
#include <cstddef>
#include <unordered_map>
#include <utility>

namespace MVR {
namespace {

bool isKnownKind(const std::string& type) {
    return type != RootPlugin::kName && LibraryManager::instance()->findPlugin(type) != nullptr;
}

} // namespace

std::vector<CoreTool> ToolContract::list() {
    std::vector<CoreTool> list;
    InstanceReference* const root = services_.getTree().getRoot();
    if (root == nullptr)
        return list;
    std::vector<InstanceReference*> references;
    root->collectInstances(references);
    std::unordered_map<const InstanceReference*, std::int32_t> places;
    for (InstanceReference* reference : references) {
        if (reference == root)
            continue;
        PluginInstance& instance = *reference->getInstance();
        CoreTool& tool = list.emplace_back();
        tool.name = instance.getName();
        tool.type = instance.getPlugin()->getName();
        const auto parent = places.find(reference->getParentReference());
        tool.parent = parent != places.end() ? parent->second : -1;
        tool.isChecked = reference->isChecked();
        tool.access = &instance;
        places.emplace(reference, static_cast<std::int32_t>(list.size()) - 1);
    }
    // Ask the adaptor only after the walk over the tree, which it may change.
    references.erase(std::remove(references.begin(), references.end(), root), references.end());
    const std::vector<InstanceReference::Watch> tools(references.begin(), references.end());
    const auto isGone = [](const InstanceReference::Watch& tool) { return tool.get() == nullptr; };
    for (std::size_t i = 0; i < list.size() && !isGone(tools[i]); ++i)
        list[i].nodes = services_.getAdaptor()->getNodes(list[i].access);
    return std::any_of(tools.begin(), tools.end(), isGone) ? ToolContract::list() : list;
}

CInterface* ToolContract::find(std::string name) {
    InstanceReference* const root = services_.getTree().getRoot();
    InstanceReference* const tool =
        root != nullptr ? root->findInstance(name, false, nullptr) : nullptr;
    return tool != nullptr && tool != root ? tool->getInstance() : nullptr;
}

std::int32_t ToolContract::create(std::string type, std::string name, std::string parent,
                                  Tag bindings, std::string* createdName) {
    const FaultList::Operation operation(services_.getFaults());
    std::int32_t code = 0;
    InstanceReference* const below = findParent(services_, parent, code);
    if (below == nullptr)
        return code;
    Tag data = Plugin::makeData(type);
    // The data is applied to the tool that it names.
    data.addChild(Tag::element(ModelWord::kName, isBlank(name) ? type + "_01" : name));
    if (!bindings.isEmpty()) {
        if (!bindings.hasName(kProfileElement))
            return reportCode(Codes::kToolBadProfile);
        data.addChild(Tag::element(ModelWord::kInputProfile)).addChild(std::move(bindings));
    }
    // A listener may remove the tool: its name is returned before the change is announced.
    const ToolListChanges::Scope change(services_.getToolListChanges());
    InstanceReference* const created = services_.getTree().create(std::move(data), below, false);
    if (created != nullptr) {
        if (createdName != nullptr)
            *createdName = created->getInstance()->getName();
        return 0;
    }
    return reportCode(isKnownKind(type) ? Codes::kToolNotCreated : Codes::kPluginNotFound);
}

std::int32_t ToolContract::rename(std::string name, std::string wanted, std::string* taken) {
    std::int32_t code = 0;
    InstanceReference* const tool = findTool(services_, name, code);
    if (tool == nullptr)
        return code;
    if (isBlank(wanted))
        return reportCode(Codes::kToolBadName);
    const ToolListChanges::Scope change(services_.getToolListChanges());
    if (wanted != name) {
        tool->getInstance()->setName(wanted);
        services_.getToolListChanges().note();
    }
    if (taken != nullptr)
        *taken = tool->getInstance()->getName();
    return 0;
}

std::int32_t ToolContract::remove(std::string name, bool withObjects) {
    std::int32_t code = 0;
    if (InstanceReference* const tool = findTool(services_, name, code))
        tool->getInstance()->unplug(withObjects);
    return code;
}

std::int32_t ToolContract::select(std::string name) {
    std::int32_t code = 0;
    InstanceReference* const tool = name.empty() ? nullptr : findTool(services_, name, code);
    if (code == 0)
        services_.getTree().getControl().select(tool);
    return code;
}

std::string ToolContract::getSelected() {
    const InstanceReference* const selected = services_.getTree().getSelected();
    const bool isTool =
        selected != nullptr && selected->isInTree() && selected->getParentReference() != nullptr;
    return isTool ? selected->getInstance()->getName() : "";
}

Tag ToolContract::getBindings(std::string name) {
    std::int32_t code = 0;
    const InstanceReference* const tool = findTool(services_, name, code);
    return tool != nullptr ? tool->getInstance()->getInputProfile("", true) : Tag();
}

std::int32_t ToolContract::setBindings(std::string name, Tag profile, std::int32_t* missing) {
    std::int32_t code = 0;
    const InstanceReference* const tool = findTool(services_, name, code);
    if (tool == nullptr)
        return code;
    if (!profile.hasName(kProfileElement))
        return reportCode(Codes::kToolBadProfile);
    if (code = refuseDuringTake(services_); code != 0)
        return code;
    const std::int32_t absent = tool->getInstance()->applyInputProfile(profile);
    if (missing != nullptr)
        *missing = absent;
    return 0;
}

Tag ToolContract::getExactConfiguration() {
    Tag configuration;
    if (InstanceReference* const root = services_.getTree().getRoot())
        root->save(configuration, SaveMask::kScene | SaveMask::kExact);
    return configuration;
}

std::vector<CoreToolInput> ToolContract::listInputs(std::string name) {
    std::vector<CoreToolInput> list;
    std::int32_t code = 0;
    const InstanceReference* const tool = findTool(services_, name, code);
    if (tool == nullptr)
        return list;
    const UniDevice::PropertyHandler& properties = tool->getInstance()->getProperties();
    for (std::int32_t i = 0; i < properties.count(); ++i) {
        const UniDevice::Property& property = *properties.property(i);
        const UniDevice::Control* const control = property.control;
        list.push_back({property.name, property.acceptedKinds, control != nullptr,
                        control != nullptr ? control->getValue() : 0.0});
    }
    return list;
}

std::int32_t ToolContract::setMapping(std::string name, Tag property) {
    std::int32_t code = 0;
    const InstanceReference* const tool = findTool(services_, name, code);
    if (tool == nullptr)
        return code;
    if (!property.hasName(UniDevice::BindingWord::kProperty))
        return reportCode(Codes::kToolBadProfile);
    UniDevice::Property* const input = tool->getInstance()->getProperties().property(
        property.attribute(UniDevice::BindingWord::kName));
    if (input == nullptr)
        return reportCode(Codes::kToolNoInput);
    input->readSettings(property);
    return 0;
}

bool ToolContract::getRecordedSpan(double* start, double* end) {
    std::vector<InstanceReference*> references;
    if (InstanceReference* const root = services_.getTree().getRoot())
        root->collectInstances(references);
    bool isEmpty = true;
    for (InstanceReference* reference : references) {
        for (const auto& values : reference->getInstance()->getStoredInput().getValues()) {
            const auto& keys = values.getKeys();
            if (keys.empty())
                continue;
            *start = isEmpty ? keys[0].time : std::min(*start, keys[0].time);
            *end = isEmpty ? keys.back().time : std::max(*end, keys.back().time);
            isEmpty = false;
        }
    }
    return !isEmpty;
}

} // namespace MVR
