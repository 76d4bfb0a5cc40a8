#pragma once

#include "plugins/contract/c_camera_plugin.h"
#include "plugins/contract/c_interface.h"

#include <cstdint>
#include <functional>
#include <string>
#include <vector>

namespace MVR {
class CoreImplementation;
class PluginInstance;
} // namespace MVR

namespace MVR::Testing {

class ScriptedTool;

/// A kind of tool whose objects do as the test says and note each call as a line of text, such as
/// "Rig_01 record 0.04".
class ScriptedPlugin final : public CCameraPlugin {
public:
    /// Adds a kind of tool, known to the core until that is unloaded. Call it after the core was
    /// loaded.
    static ScriptedPlugin& add(const std::string& typeName);

    /// Places a tool of this kind under the root of the tree. With an empty name it gets the kind's
    /// first one.
    PluginInstance& place(CoreImplementation& core, const std::string& name = "") const;

    std::vector<std::string> calls;
    std::vector<std::string> properties;  ///< asked for in init()
    std::vector<std::int32_t> extensions; ///< those that the tools list
    std::int32_t initResult = 0;
    std::int32_t createResult = 0;
    std::int32_t loadResult = 0;
    std::int32_t saveResult = 0;
    std::function<void(ScriptedTool&)> onInit, onCreate, onLoad, onSave;
    std::function<void(ScriptedTool&, double)> onStart, onRecord, onFinish;
    std::function<std::intptr_t(ScriptedTool&, std::int32_t, std::intptr_t)> onExtend;

    CCamera* create(CCamera::CreateParam* param) override;
    std::string getName() override { return name_; }
    std::string getDescription() override { return "A tool for tests"; }
    std::string getCategory() override { return "Tests"; }

private:
    explicit ScriptedPlugin(std::string typeName) : name_(std::move(typeName)) {}

    std::string name_;
};

/// One placed tool of that kind. Its kind must outlive it.
class ScriptedTool final : public CCamera {
public:
    ScriptedTool(const CreateParam* param, ScriptedPlugin& kind) : CCamera(param), kind_(kind) {}
    ~ScriptedTool() override { note("destroy"); }

    ScriptedPlugin& getKind() const { return kind_; }
    /// Returns the mapped value of its property at `index`.
    double read(std::size_t index) const;
    /// Returns the block that it was saved with.
    std::string readSaveData();

    std::intptr_t extend(std::int32_t id, std::intptr_t data) override;
    std::vector<std::int32_t> getExtensions() override { return kind_.extensions; }
    void startRecording(double time) override { actAt("startRecording", time, kind_.onStart); }
    void finishRecording(double time) override { actAt("finishRecording", time, kind_.onFinish); }
    void record(double time) override { actAt("record", time, kind_.onRecord); }
    void setTime(double time) override { actAt("setTime", time, nullptr); }
    std::int32_t init() override;
    std::int32_t create() override { return act("create", kind_.onCreate, kind_.createResult); }
    std::int32_t load() override { return act("load", kind_.onLoad, kind_.loadResult); }
    std::int32_t save() override { return act("save", kind_.onSave, kind_.saveResult); }

private:
    using Act = std::function<void(ScriptedTool&)>;
    using ActAt = std::function<void(ScriptedTool&, double)>;

    void note(const std::string& call);
    void actAt(const char* call, double time, const ActAt& act);
    std::int32_t act(const char* call, const Act& act, const std::int32_t& result);

    ScriptedPlugin& kind_;
    std::vector<UniDevice::Property*> properties_; // the core's
};

} // namespace MVR::Testing
