#include "stage/commands/resimulate.h"

#include "core/contract/core_tools.h"
#include "stage/base/machine.h"
#include "stage/commands/commands.h"
#include "stage/commands/outputs.h"
#include "stage/commands/scene_opening.h"
#include "stage/export/gltf_writer.h"
#include "stage/host/core_code.h"
#include "stage/host/session.h"
#include "stage/takes/report.h"
#include "stage/takes/resimulation.h"

#include <algorithm>
#include <cstdio>
#include <optional>
#include <string>
#include <vector>

namespace Stage {

namespace {

const std::vector<ExitCode> kCodes = {ExitCode::Ok,
                                      ExitCode::Usage,
                                      ExitCode::BadFile,
                                      ExitCode::CoreOrToolMissing,
                                      ExitCode::BadBinding,
                                      ExitCode::CutShort,
                                      ExitCode::OutputNotWritten,
                                      ExitCode::Incomplete};

struct ResimulateOptions {
    InstallValues install;
    std::string path; ///< of the scene
    std::vector<std::string> settings;
    std::optional<double> start;
    std::optional<double> end;
    std::string out;
    std::string outCurves;
    std::string scene; ///< file that the scene is saved to; empty for none
    ShownAsCameras cameras;
    bool isForced = false;
    bool printTable = false;
};

std::vector<Option> resimulateOptions() {
    return withCommonOptions({
        {"SCENE", nullptr, "a scene saved by record or model load"},
        {"--set", "PROPERTY.PARAMETER=NUMBER",
         "change multiplier, exponent, deadzone or offset of a\nproperty; \"*\" means all bound "
         "properties, \"NAME/PROPERTY\"\nthat of one tool. May be repeated"},
        {"--start", "SECONDS",
         "where the simulation starts, from -1000000 (start of the\nscene's range)"},
        {"--end", "SECONDS",
         "where it ends, up to 2000000 (end of the recorded input, or\nof the scene's range if "
         "that is earlier)"},
        {"--out", "FILE", "write the scene as glTF"},
        kAsOption,
        {"--out-curves", "FILE", "write its keys as a table, for plotting"},
        {"--scene", "FILE", "save the scene with the changed parameters; may be SCENE"},
        kForceOption,
        {"--table", nullptr, "print how far the result is from the old curves"},
    });
}

std::string help() {
    return "usage: mirvane-stage resimulate SCENE [OPTIONS]\n\n"
           "Runs the takes of a saved scene again from the recorded input, with the same or with\n"
           "other parameters. No device is needed. SCENE stays as it is unless --scene names "
           "it.\n\n" +
           describe(resimulateOptions()) + "\nexit codes\n" + describe(kCodes) +
           "\nexample\n"
           "  mirvane-stage resimulate shot.scene --set \"Camera/Position X.multiplier=2\" \\\n"
           "    --scene wide.scene --out wide.gltf\n";
}

bool take(ResimulateOptions& options, const Argument& argument, std::string& error) {
    if (argument.name == "--start")
        return readNumber(argument, kLeastTime, kLongestTime, options.start.emplace(), error);
    if (argument.name == "--end")
        return readNumber(argument, kLeastTime, kLongestTime, options.end.emplace(), error);
    if (argument.name == kAsOption.name)
        return addCamera(argument, options.cameras, error);
    if (argument.name == "SCENE")
        options.path = argument.value;
    else if (argument.name == "--set")
        options.settings.push_back(argument.value);
    else if (argument.name == "--out")
        options.out = argument.value;
    else if (argument.name == "--out-curves")
        options.outCurves = argument.value;
    else if (argument.name == "--scene")
        options.scene = argument.value;
    else if (argument.name == kForceOption.name)
        options.isForced = true;
    else
        options.printTable = true;
    return true;
}

/// Changes the parameters permanently, so that the saved scene has them.
ExitCode change(Session& session, const std::vector<Setting>& settings) {
    for (const Setting& setting : settings) {
        const auto properties = session.findProperties(setting);
        if (properties.empty())
            return fail(ExitCode::BadBinding, session.noProperties(setting));
        for (const ToolProperty& place : properties) {
            const std::int32_t code =
                session.getTree().setMapping(place.tool, toMapping(setting, place.property));
            if (code != 0) {
                return fail(ExitCode::BadBinding, "the core can't change " + setting.toText() +
                                                      ": " + describeCode(code));
            }
        }
    }
    return ExitCode::Ok;
}

/// Returns the end of the scene's range, or that of the recorded input for a take that was cut
/// short: beyond it there is nothing to simulate.
double endOfTake(const Session& session, const SceneData& data, double start) {
    double first = 0.0;
    double last = 0.0;
    const bool hasInput = session.getTree().getRecordedSpan(&first, &last);
    return hasInput && last > start ? std::min(last, data.end) : data.end;
}

ExitCode run(const ResimulateOptions& options, const SceneData& data,
             const std::vector<Setting>& settings) {
    std::string error;
    Session session;
    if (!session.open(options.install, error))
        return fail(ExitCode::CoreOrToolMissing, error);
    const ExitCode opened =
        openScene(session, data, {options.path, {options.scene}, options.isForced});
    if (opened == ExitCode::CoreOrToolMissing)
        return opened;
    if (const ExitCode code = change(session, settings); code != ExitCode::Ok)
        return code;
    if (const ExitCode code = checkCameras(session.scene, options.cameras); code != ExitCode::Ok)
        return code;
    catchStopRequests();
    const CurveCopy before(session.scene);
    const double start = options.start.value_or(data.start);
    const double end = options.end.value_or(endOfTake(session, data, start));
    const auto run = resimulate(session, start, end, {}, error, isStopRequested);
    if (!run)
        return fail(ExitCode::CoreOrToolMissing, error);
    std::vector<const StageNode*> nodes;
    for (const auto& node : session.scene.getNodes())
        nodes.push_back(node.get());
    ExitCode written =
        writeNodes(nodes, data.start, options.cameras, options.out, options.outCurves);
    if (!options.scene.empty() && !session.saveScene(options.scene, error))
        written = fail(ExitCode::OutputNotWritten, error);
    if (options.printTable) {
        std::fputs(
            toTable(describe(settings, CurveCopy(session.scene).compare(before), *run, end - start))
                .c_str(),
            stdout);
    }
    if (run->isCutShort)
        complain("stopped before the end; the simulated frames are kept");
    return firstFailure({written, run->isCutShort ? ExitCode::CutShort : ExitCode::Ok, opened});
}

} // namespace

ExitCode resimulateCommand(const std::vector<std::string>& words) {
    ResimulateOptions options;
    const auto takeOne = [&options](const Argument& argument, std::string& error) {
        return take(options, argument, error);
    };
    if (const auto code = readCommand(words, resimulateOptions(), help(), options.install, takeOne))
        return *code;
    SceneData data;
    std::string error;
    if (!readSceneFile(options.path, data, error))
        return fail(ExitCode::BadFile, error);
    const std::vector<ToolPlan> tools = listTools(data.configuration);
    std::vector<Setting> settings;
    for (const std::string& text : options.settings)
        if (!parseSetting(text, tools, settings.emplace_back(), error))
            return fail(ExitCode::Usage, error);
    if (options.end.value_or(data.end) <= options.start.value_or(data.start))
        return fail(ExitCode::Usage, "the simulation ends before its first frame");
    const ExitCode code =
        checkOutputs({options.out, options.outCurves}, {options.path}, {options.scene});
    return code != ExitCode::Ok ? code : run(options, data, settings);
}

} // namespace Stage
