#pragma once

#include "core/contract/core_extensions.h"
#include "stage/host/core_library.h"
#include "stage/host/install_values.h"
#include "stage/host/stage_adaptor.h"
#include "stage/rig/tool_list.h"
#include "stage/rig/tool_plan.h"
#include "stage/scene/scene.h"
#include "stage/scene/scene_file.h"
#include "stage/scene/timeline.h"
#include "stage/scene/undo_list.h"

#include <memory>
#include <optional>
#include <string>
#include <vector>

namespace Stage {

/// A tool in the scene.
struct PlacedTool {
    ToolPlan plan;
    MVR::CInterface* access; ///< the core's; never null
};

/// An input of a tool in the scene.
struct ToolProperty {
    std::string tool; ///< its name in the scene
    std::string property;
};

/// One run of the host with the core attached.
///
/// 1. open() loads and attaches the core.
/// 2. openScene(), unless the scene is a new one.
/// 3. place() for each tool, then take() and resimulate() as often as wanted.
/// 4. saveScene(), as often as wanted.
/// 5. close(), or the end of the object.
class Session {
public:
    Session() = default;
    Session(const Session&) = delete;
    Session& operator=(const Session&) = delete;
    ~Session() { close(); }

    /// Returns false, with the reason in `error`, if there is no core, or none that fits.
    [[nodiscard]] bool open(const InstallValues& values, std::string& error);
    void close();

    /// Restores a scene that was read from a file: nodes, time and tools, as getTools(). Nothing
    /// of it can be undone. getFaults() tells what can't be created; it would be lost if the scene
    /// were saved.
    void openScene(const SceneData& data);
    /// Writes the scene's file, from which another process can go on. Returns false, with the
    /// reason in `error` and the old file intact, if it can't be written.
    [[nodiscard]] bool saveScene(const std::string& path, std::string& error);

    /// Adds the tools that the core created itself, as for a model, to getTools(). Returns the new
    /// ones.
    [[nodiscard]] std::vector<const PlacedTool*> adoptTools();

    /// Places a tool. Returns null, with the reason in `error`, if the core can't create it. The
    /// result is valid until close().
    [[nodiscard]] const PlacedTool* place(const ToolPlan& plan, std::string& error);
    [[nodiscard]] const std::vector<std::unique_ptr<PlacedTool>>& getTools() const {
        return tools_;
    }

    /// Returns false, with the first missing property or control in `error`, if a binding of the
    /// tool isn't in effect.
    [[nodiscard]] bool checkBindings(const PlacedTool& tool, std::string& error) const;
    /// Returns the properties that a setting means; empty if there are none.
    [[nodiscard]] std::vector<ToolProperty> findProperties(const Setting& setting) const;

    /// What to tell the user if findProperties() finds nothing, or the scene has no tool of a name.
    [[nodiscard]] std::string noProperties(const Setting& setting) const;
    [[nodiscard]] std::string noTool(const std::string& name) const;

    [[nodiscard]] MVR::CoreInterface& getCore() { return *core_; }
    [[nodiscard]] MVR::CoreModels& getModels() { return *models_; }
    [[nodiscard]] MVR::CoreTools& getTree() const { return *tree_; }
    [[nodiscard]] MVR::CoreTakes& getTakes() { return *takes_; }
    [[nodiscard]] MVR::CoreInputs& getInputs() { return *inputs_; }
    /// Returns a line for each driver that doesn't work now, and each driver library that was
    /// refused.
    [[nodiscard]] std::vector<std::string> listDriverFaults();
    /// Returns what the last load, save or creation could not do.
    [[nodiscard]] std::vector<MVR::CoreFault> getFaults() { return faults_->list(); }
    /// Runs what is due in the core; see CoreLibrary::pump().
    std::int32_t pump() { return library_.pump(); }

    // The host, which may be used whether or not the core is attached.
    UndoList undo;
    Scene scene{undo};
    Timeline timeline;
    StageAdaptor adaptor{scene, undo, timeline};

private:
    [[nodiscard]] std::string noControl(const Binding& binding) const;

    InstallValuesFile installValues_;
    CoreLibrary library_;
    // Owned by the core, as its extensions are; null when detached.
    MVR::CoreInterface* core_ = nullptr;
    MVR::CoreTools* tree_ = nullptr;
    MVR::CoreModels* models_ = nullptr;
    MVR::CoreInputs* inputs_ = nullptr;
    MVR::CoreFaults* faults_ = nullptr;
    MVR::CoreTakes* takes_ = nullptr;
    std::vector<std::unique_ptr<PlacedTool>> tools_;
};

} // namespace Stage
