#include "support/scripted_tool.h"

#include "core/core_implementation.h"
#include "plugins/core_library.h"
#include "plugins/instance_reference.h"
#include "plugins/plugin.h"
#include "unidevice/control.h"

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

void ScriptedTool::note(const std::string& call) {
    kind_.calls.push_back(getName() + " " + call);
}

void ScriptedTool::note(const std::string& call, double time) {
    std::ostringstream line;
    line << call << " " << time;
    note(line.str());
}

std::intptr_t ScriptedTool::extend(std::int32_t id, std::intptr_t data) {
    return kind_.onExtend ? kind_.onExtend(*this, id, data) : 0;
}

void ScriptedTool::startRecording(double time) {
    note("startRecording", time);
    if (kind_.onStart)
        kind_.onStart(*this, time);
}

void ScriptedTool::finishRecording(double time) {
    note("finishRecording", time);
    if (kind_.onFinish)
        kind_.onFinish(*this, time);
}

void ScriptedTool::record(double time) {
    note("record", time);
    if (kind_.writesKeys) {
        SceneNode* const node = getInterface()->createNode("Node", 0, 0);
        if (TransformSnapshot* const snapshot = getInterface()->getSnapshot(node, time)) {
            const double position[3] = {read(0), 0, 0};
            snapshot->setPosition(position);
            getInterface()->nodeQuery5(node);
        }
    }
    if (kind_.onRecord)
        kind_.onRecord(*this, time);
}

std::int32_t ScriptedTool::init() {
    note("init");
    for (const std::string& name : kind_.properties)
        properties_.push_back(getInterface()->addProperty(
            name, UniDevice::finite | UniDevice::infinite | UniDevice::binary, nullptr));
    if (kind_.onInit)
        kind_.onInit(*this);
    return kind_.initResult;
}

std::int32_t ScriptedTool::create() {
    note("create");
    if (kind_.onCreate)
        kind_.onCreate(*this);
    return kind_.createResult;
}

std::int32_t ScriptedTool::load() {
    note("load");
    if (kind_.onLoad)
        kind_.onLoad(*this);
    return kind_.loadResult;
}

std::int32_t ScriptedTool::save() {
    note("save");
    if (kind_.onSave)
        kind_.onSave(*this);
    return kind_.saveResult;
}

} // namespace MVR::Testing
