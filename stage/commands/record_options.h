#pragma once

#include "stage/base/options.h"
#include "stage/export/gltf_writer.h"
#include "stage/host/install_values.h"
#include "stage/rig/tool_plan.h"
#include "stage/scene/scene_file.h"
#include "stage/takes/take.h"

#include <optional>
#include <string>
#include <vector>

namespace Stage {

/// The take, or one resimulation of it, and the files that its result goes to.
struct Pass {
    std::vector<Setting> settings; ///< of a resimulation: its changes to the take
    std::string out;               ///< glTF file; empty for none
    std::string outCurves;         ///< table of the curves; empty for none
    std::string scene;             ///< file that the scene is saved to; empty for none
};

struct RecordOptions {
    InstallValues install;
    std::vector<ToolPlan> tools;
    TakePlan take;
    double start = 0.0;
    double end = 10.0;
    double rate = 25.0;
    bool checkUndo = false;
    std::optional<Binding> latency;     ///< the control with the time at which a packet was sent
    std::string openedPath;             ///< of `opened`
    std::optional<SceneData> opened;    ///< the scene that the take is added to
    ShownAsCameras cameras;             ///< in each glTF file
    bool isForced = false;              ///< even if that loses tools of `opened`
    std::string report;                 ///< JSON file; empty for none
    std::string logInput;               ///< table of what the devices held; empty for none
    bool printTable = false;            ///< of the measurements
    std::vector<Pass> passes;           ///< the take first, then its resimulations
    ExitCode failure = ExitCode::Usage; ///< if reading the options fails
};

std::string recordHelp();

/// Returns false, with a message for the user in `error`, if the words are wrong.
[[nodiscard]] bool readRecordOptions(const std::vector<std::string>& words, RecordOptions& out,
                                     std::string& error);

} // namespace Stage
