#include "stage/commands/record.h"

#include "plugins/contract/c_interface.h"
#include "plugins/contract/extension_ids.h"
#include "stage/base/machine.h"
#include "stage/commands/commands.h"
#include "stage/commands/outputs.h"
#include "stage/commands/record_options.h"
#include "stage/commands/scene_opening.h"
#include "stage/host/session.h"
#include "stage/scene/curve_copy.h"
#include "stage/takes/input_log.h"
#include "stage/takes/progress.h"
#include "stage/takes/report.h"
#include "stage/takes/resimulation.h"
#include "stage/takes/take.h"

#include <algorithm>
#include <cstdio>
#include <string>
#include <vector>

namespace Stage {

namespace {

constexpr const char* kProbeTool = "Latency Probe";

/// One run of the command: its data, and its steps in the order in which they run.
class RecordRun {
public:
    explicit RecordRun(const RecordOptions& options) : options_(options) {}

    ExitCode run();

private:
    ExitCode checkOutputs() const;
    std::vector<std::string> listScenes() const;
    ExitCode openScene();
    ExitCode placeTools();
    ExitCode checkSettings() const;
    ExitCode recordTake();
    ExitCode resimulateAll();
    ExitCode writePass(const Pass& pass);
    void tellDriverFaults();
    ExitCode tellNotes();
    std::vector<const StageNode*> nodesToWrite() const;

    const RecordOptions& options_;
    Session session_;
    MVR::CInterface* probe_ = nullptr;
    CurveCopy take_;
    Report report_;
    std::string inputTable_;
    std::vector<std::string> toldFaults_; // of drivers
};

/// Checks that the results can be written, before the take is played.
ExitCode RecordRun::checkOutputs() const {
    std::vector<std::string> paths = {options_.report, options_.logInput};
    for (const Pass& pass : options_.passes) {
        paths.push_back(pass.out);
        paths.push_back(pass.outCurves);
    }
    return Stage::checkOutputs(paths, {options_.openedPath}, listScenes());
}

std::vector<std::string> RecordRun::listScenes() const {
    std::vector<std::string> scenes;
    for (const Pass& pass : options_.passes)
        scenes.push_back(pass.scene);
    return scenes;
}

/// Restores the scene to which the take is added, if there is one.
ExitCode RecordRun::openScene() {
    if (!options_.opened)
        return ExitCode::Ok;
    const ExitCode opened = Stage::openScene(
        session_, *options_.opened, {options_.openedPath, listScenes(), options_.isForced});
    if (opened == ExitCode::CoreOrToolMissing)
        return opened;
    std::string error;
    for (const auto& tool : session_.getTools())
        if (!session_.checkBindings(*tool, error))
            return fail(ExitCode::BadBinding, error);
    return opened;
}

ExitCode RecordRun::placeTools() {
    std::vector<ToolPlan> plans = options_.tools;
    if (options_.latency) {
        plans.push_back({kProbeTool, kProbeTool, {*options_.latency}, {}});
        plans.back().settings.push_back({"", "*", "deadzone", 0.0});
        plans.back().isAside = true;
    }
    std::string error;
    for (const ToolPlan& plan : plans) {
        const PlacedTool* tool = session_.place(plan, error);
        if (tool == nullptr)
            return fail(ExitCode::CoreOrToolMissing, error);
        if (!session_.checkBindings(*tool, error))
            return fail(ExitCode::BadBinding, error);
        if (options_.latency && plan.type == kProbeTool)
            probe_ = tool->access;
    }
    return checkSettings();
}

ExitCode RecordRun::checkSettings() const {
    for (const Pass& pass : options_.passes) {
        for (const Setting& setting : pass.settings)
            if (session_.findProperties(setting).empty())
                return fail(ExitCode::BadBinding, session_.noProperties(setting));
    }
    return checkCameras(session_.scene, options_.cameras);
}

std::vector<const StageNode*> RecordRun::nodesToWrite() const {
    std::vector<const StageNode*> nodes;
    for (const auto& node : session_.scene.getNodes())
        if (probe_ == nullptr || node->getOwner() != probe_)
            nodes.push_back(node.get());
    return nodes;
}

/// Writes the scene as it is now, after the pass, to the files that the pass names.
ExitCode RecordRun::writePass(const Pass& pass) {
    const ExitCode nodes = writeNodes(report_.nodes, session_.timeline.getStart(), options_.cameras,
                                      pass.out, pass.outCurves);
    std::string error;
    if (pass.scene.empty() || session_.saveScene(pass.scene, error))
        return nodes;
    return firstFailure({nodes, fail(ExitCode::OutputNotWritten, error)});
}

/// Tells what is wrong with the drivers, each line once: a driver may learn of it during the take.
void RecordRun::tellDriverFaults() {
    for (const std::string& line : session_.listDriverFaults()) {
        if (std::find(toldFaults_.begin(), toldFaults_.end(), line) != toldFaults_.end())
            continue;
        complain(line);
        toldFaults_.push_back(line);
    }
}

/// Tells what the take lacks of what was performed. Frames that come late spoil it only if all do.
ExitCode RecordRun::tellNotes() {
    ExitCode code = ExitCode::Ok;
    for (const MVR::CoreTakeNote& note : session_.getTakes().list()) {
        complain(note.text);
        report_.notes.push_back(note.text);
        if (note.kind != MVR::CoreTakeNote::kLateFrames || note.frames >= report_.take.frames)
            code = ExitCode::NotAsPerformed;
    }
    return code;
}

ExitCode RecordRun::recordTake() {
    session_.timeline.setRate(options_.rate);
    session_.timeline.setRange(options_.start, options_.end);
    session_.timeline.setTime(session_.timeline.getStart());

    const CurveCopy before(session_.scene);
    const std::vector<MVR::SceneNode*> probeNodes =
        probe_ != nullptr ? session_.adaptor.getNodes(probe_) : std::vector<MVR::SceneNode*>();
    const auto* probeNode =
        probeNodes.empty() ? nullptr : static_cast<const StageNode*>(probeNodes.front());
    InputLog input(session_);
    TakePlan plan = options_.take;
    if (!options_.logInput.empty())
        plan.onFrame = [&input](double time) { input.addFrame(time); };
    std::string error;
    std::optional<TakeFigures> figures;
    {
        Progress progress(session_.timeline.getStart());
        figures = runTake(
            session_, plan, probeNode,
            [&progress](double time, const TakeFigures& state) { progress.show(time, state); },
            error);
    }
    if (!figures)
        return fail(ExitCode::CoreOrToolMissing, error);
    report_.rate = session_.timeline.getRate();
    report_.start = session_.timeline.getStart();
    report_.take = std::move(*figures);
    report_.nodes = nodesToWrite();
    take_ = CurveCopy(report_.nodes);
    inputTable_ = input.getTable();
    if (options_.checkUndo) {
        report_.isUndoGood = checkUndo(session_, before, error);
        if (!*report_.isUndoGood)
            return fail(ExitCode::CheckFailed, error);
    }
    return ExitCode::Ok;
}

ExitCode RecordRun::resimulateAll() {
    // The request only ended the take: the resimulations still run.
    const auto isToStop = [this] { return isStopRequested() && !report_.take.isCutShort; };
    ExitCode worst = ExitCode::Ok;
    for (std::size_t i = 1; i < options_.passes.size(); ++i) {
        const Pass& pass = options_.passes[i];
        std::string error;
        const double start = report_.start;
        const double end = report_.take.endTime;
        const auto write = [&] { worst = firstFailure({worst, writePass(pass)}); };
        const std::optional<ResimulationRun> run =
            resimulate(session_, start, end, pass.settings, error, isToStop, write);
        if (!run)
            return fail(ExitCode::CoreOrToolMissing, error);
        report_.resimulations.push_back(
            describe(pass.settings, CurveCopy(report_.nodes).compare(take_), *run, end - start));
        if (run->isCutShort || (isToStop() && i + 1 < options_.passes.size())) {
            complain("stopped at resimulation " + std::to_string(i) + " of " +
                     std::to_string(options_.passes.size() - 1) +
                     "; the simulated frames are kept");
            return worst != ExitCode::Ok ? worst : ExitCode::CutShort;
        }
    }
    return worst;
}

ExitCode RecordRun::run() {
    ExitCode code = checkOutputs();
    if (code != ExitCode::Ok)
        return code;
    std::string error;
    if (!session_.open(options_.install, error))
        return fail(ExitCode::CoreOrToolMissing, error);
    tellDriverFaults();
    const ExitCode opened = openScene();
    code = opened == ExitCode::Ok || opened == ExitCode::Incomplete ? placeTools() : opened;
    if (code != ExitCode::Ok)
        return code;
    catchStopRequests();
    const ExitCode take = recordTake();
    tellDriverFaults();
    const ExitCode notes = tellNotes();
    if (take == ExitCode::CoreOrToolMissing)
        return take;
    if (report_.take.isCutShort && report_.take.frames == 0)
        return fail(ExitCode::CutShort, "stopped before the first frame; nothing is written");
    // The probe has measured, and isn't part of the scene.
    if (probe_ != nullptr)
        probe_->extend(MVR::InterfaceExtension::kUnplug, 0);
    // From here on there is a take to lose: each step runs even if the one before has failed.
    const ExitCode written = writePass(options_.passes.front());
    const ExitCode passes = resimulateAll();
    const ExitCode report = writeOutput(options_.report, toJson(report_));
    const ExitCode input = writeOutput(options_.logInput, inputTable_);
    if (options_.printTable)
        std::fputs(toTable(report_).c_str(), stdout);
    const ExitCode failure = firstFailure({written, passes, report, input, take});
    if (failure != ExitCode::Ok)
        return failure;
    const bool hasEnd = !options_.take.autoExpand;
    return firstFailure({report_.take.isCutShort && hasEnd ? ExitCode::CutShort : opened, notes});
}

} // namespace

ExitCode recordCommand(const std::vector<std::string>& words) {
    if (answerHelp(words, recordHelp()))
        return ExitCode::Ok;
    RecordOptions options;
    std::string error;
    if (!readRecordOptions(words, options, error)) {
        complain(error);
        return options.failure;
    }
    return RecordRun(options).run();
}

} // namespace Stage
