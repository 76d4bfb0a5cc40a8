#include "support/scripted_tool.h"

#include "core/core_implementation.h"
#include "plugins/instance_reference.h"
#include "plugins/libraries/core_library.h"
#include "plugins/libraries/plugin.h"
#include "unidevice/sdk/control.h"

#include <gtest/gtest.h>

#include <sstream>

namespace MVR::Testing {

ScriptedPlugin& ScriptedPlugin::add(const std::string& typeName) {
    auto* const descriptor = new ScriptedPlugin(typeName);
    std::int32_t error = 0;
    EXPECT_NE(Plugin::create(CoreLibrary::instance(), descriptor, error), nullptr);
    return *descriptor;
}

PluginInstance& ScriptedPlugin::place(CoreImplementation& core, const std::string& name) const {
    InstanceReference* const reference = core.createByType(name_, name, false);
    if (reference == nullptr) {
        ADD_FAILURE() << "no tool of the kind " << name_;
        std::abort();
    }
    return *reference->getInstance();
}

CCamera* ScriptedPlugin::create(CCamera::CreateParam* param) {
    return new ScriptedTool(param, *this);
}

double ScriptedTool::read(std::size_t index) const {
    return properties_.at(index)->getValue();
}

std::string ScriptedTool::readSaveData() {
    const void* bytes = nullptr;
    const std::int32_t size = getInterface()->getSaveData(&bytes);
    return std::string(static_cast<const char*>(bytes), static_cast<std::size_t>(size));
}

void ScriptedTool::note(const std::string& call) {
    kind_.calls.push_back(getName() + " " + call);
}

void ScriptedTool::actAt(const char* call, double time, const ActAt& act) {
    std::ostringstream line;
    line << call << " " << time;
    note(line.str());
    if (act)
        act(*this, time);
}

std::int32_t ScriptedTool::act(const char* call, const Act& act, const std::int32_t& result) {
    note(call);
    if (act)
        act(*this);
    return result;
}

std::intptr_t ScriptedTool::extend(std::int32_t id, std::intptr_t data) {
    return kind_.onExtend ? kind_.onExtend(*this, id, data) : 0;
}

std::int32_t ScriptedTool::init() {
    for (const std::string& name : kind_.properties)
        properties_.push_back(getInterface()->addProperty(
            name, UniDevice::finite | UniDevice::infinite | UniDevice::binary, nullptr));
    return act("init", kind_.onInit, kind_.initResult);
}

} // namespace MVR::Testing
