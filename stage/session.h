#pragma once

#include "stage/core_library.h"
#include "stage/install_values.h"
#include "stage/scene/scene.h"
#include "stage/stage_adaptor.h"
#include "stage/timeline.h"
#include "stage/tool_plan.h"
#include "stage/undo_list.h"

#include <memory>
#include <string>
#include <vector>

namespace UniDevice {
class Property;
}

namespace Stage {

/// A tool that stands in the scene.
struct PlacedTool {
    ToolPlan plan;
    MVR::CInterface*
        access; ///< null if the tool has no node, through which the host gets to know it
};

/// One run of the host with the core attached.
///
/// 1. open() loads and attaches the core.
/// 2. place() for each tool, then take() and resimulate() as often as wanted.
/// 3. close(), or the end of the object.
class Session {
public:
    Session() = default;
    Session(const Session&) = delete;
    Session& operator=(const Session&) = delete;
    ~Session() { close(); }

    /// False, with the reason in `error`, if there is no core, or none that fits.
    [[nodiscard]] bool open(const InstallValues& values, std::string& error);
    void close();

    /// Places a tool; null, with the reason in `error`, if the core can't make it. The result is
    /// valid until close().
    [[nodiscard]] const PlacedTool* place(const ToolPlan& plan, std::string& error);
    [[nodiscard]] const std::vector<std::unique_ptr<PlacedTool>>& getTools() const {
        return tools_;
    }

    /// False, with the first property or control that isn't there in `error`, if a binding of the
    /// tool doesn't stand.
    [[nodiscard]] bool checkBindings(const PlacedTool& tool, std::string& error) const;
    /// The properties that a setting means; empty if there are none.
    [[nodiscard]] std::vector<UniDevice::Property*> findProperties(const Setting& setting) const;

    [[nodiscard]] MVR::CoreInterface& getCore() { return *core_; }
    /// Runs what is due in the core; see CoreLibrary::pump().
    std::int32_t pump() { return library_.pump(); }

    // The host: free to use whether or not the core is attached.
    UndoList undo;
    Scene scene{undo};
    Timeline timeline;
    StageAdaptor adaptor{scene, undo, timeline};

private:
    InstallValuesFile installValues_;
    CoreLibrary library_;
    MVR::CoreInterface* core_ = nullptr; // the core's; null when detached
    std::vector<std::unique_ptr<PlacedTool>> tools_;
};

} // namespace Stage
