#include "stage/commands/record_options.h"

#include "stage/commands/commands.h"
#include "stage/commands/outputs.h"
#include "stage/commands/scene_opening.h"
#include "stage/rig/tool_list.h"
#include "stage/scene/scene_file.h"

#include <algorithm>
#include <cmath>
#include <cstdio>
#include <iterator>
#include <utility>

namespace Stage {

namespace {

constexpr int kLongestCountdown = 3600; // seconds
constexpr int kSlowest = 10;

const std::vector<ExitCode> kCodes = {ExitCode::Ok,
                                      ExitCode::Usage,
                                      ExitCode::CoreOrToolMissing,
                                      ExitCode::BadBinding,
                                      ExitCode::OutputNotWritten,
                                      ExitCode::CutShort,
                                      ExitCode::CheckFailed,
                                      ExitCode::BadFile,
                                      ExitCode::Incomplete,
                                      ExitCode::NotAsPerformed};

std::vector<Option> recordOptions() {
    return withCommonOptions({
        {"--tool", "TYPE",
         "place a tool; the --name, --bind, --set and --bindings that\nfollow belong to it"},
        {"--name", "NAME", "the tool's name; by default its type and a number"},
        {"--bind", "PROPERTY=DEVICE:TYPE[:INDEX]",
         "drive a property with a control, such as\n\"Position X=OSC:/camera/position:0\"; "
         "it replaces\nan earlier --bind. \"Pad#1\" is the second device Pad"},
        {"--set", "PROPERTY.PARAMETER=NUMBER",
         "set multiplier, exponent, deadzone or offset of a\nproperty; \"*\" means all bound "
         "properties. The dead zone\nis 0.1 unless it is set"},
        {"--bindings", "FILE", "read lines \"bind ...\" and \"set ...\" as in these options"},
        {"--open", "SCENE",
         "begin with a saved scene: its tools with their bindings,\nits takes, range and frame "
         "rate"},
        {"--start", "SECONDS",
         "start of the animation range and of the take (0). All\ntimes are from -1000000 to "
         "1000000"},
        {"--end", "SECONDS", "end of the range (start + 10)"},
        {"--seconds", "N", "length of the take, instead of --end; it stops there"},
        {"--rate", "FPS", "frames per second, 0.1 to 100000 (25)"},
        {"--countdown", "N", "whole seconds before the take, 0 to 3600 (3)"},
        {"--slow-motion", "N", "1 to 10: 1 is real time, each further step halves the\nspeed (1)"},
        {"--no-auto-expand", nullptr,
         "stop at the end of the range; by default the range grows\nand the take goes on until "
         "Ctrl+C"},
        {"--undo-redo", nullptr, "check that one undo removes the take and one redo restores\nit"},
        {"--latency-bind", "DEVICE:TYPE[:INDEX]",
         "measure the time from packet to key by this control, which\nsends the sender's steady "
         "clock in seconds"},
        {"--resimulate", nullptr,
         "simulate the take again, changed by the --set that follow;\n\"NAME/PROPERTY\" means one "
         "tool. May be repeated"},
        {"--out", "FILE", "write the take, or the resimulation it follows, as glTF"},
        kAsOption,
        {"--out-curves", "FILE", "write its keys as a table, for plotting"},
        {"--scene", "FILE",
         "save the scene with its keys and parameters, for\nmirvane-stage resimulate and --open"},
        kForceOption,
        {"--report", "FILE", "write the measurements as JSON"},
        {"--log-input", "FILE",
         "write the values of the bound controls at each frame of the\ntake, as the devices have "
         "them"},
        {"--table", nullptr, "print the measurements"},
    });
}

/// Turns arguments into options, one after the other: the meaning of a --set depends on the
/// arguments before it.
class RecordReader {
public:
    explicit RecordReader(RecordOptions& options) : options_(options) { options_.passes.resize(1); }

    bool read(const Argument& argument, std::string& error) {
        if (takeCommonArgument(argument, options_.install))
            return true;
        return isOfTool(argument) ? readOfTool(argument, error)
                                  : readOfPass(argument) || readOfTake(argument, error);
    }

    bool finish(std::string& error);

private:
    bool isOfTool(const Argument& argument) const {
        return argument.name == "--tool" || argument.name == "--name" ||
               argument.name == "--bind" || argument.name == "--bindings" ||
               argument.name == "--set";
    }
    bool readOfTool(const Argument& argument, std::string& error);
    bool addTool(const std::string& type);
    bool open(const std::string& path, std::string& error);
    std::vector<ToolPlan> knownTools() const;
    bool readOfPass(const Argument& argument);
    bool readOfTake(const Argument& argument, std::string& error);

    RecordOptions& options_;
    std::optional<double> end_;
    std::optional<double> seconds_;
};

bool RecordReader::readOfTool(const Argument& argument, std::string& error) {
    if (argument.name == "--set" && options_.passes.size() > 1) {
        return parseSetting(argument.value, knownTools(),
                            options_.passes.back().settings.emplace_back(), error);
    }
    if (options_.passes.size() > 1) {
        error = argument.name + " must come before the first --resimulate";
        return false;
    }
    if (argument.name == "--tool")
        return addTool(argument.value);
    if (options_.tools.empty()) {
        error = argument.name + " must follow the --tool that it belongs to";
        return false;
    }
    ToolPlan& tool = options_.tools.back();
    if (argument.name == "--bind")
        return addBinding(argument.value, tool, error);
    if (argument.name == "--set")
        return parseSetting(argument.value, {}, tool.settings.emplace_back(), error);
    if (argument.name == "--bindings")
        return readPlanFile(argument.value, tool, error);
    if (argument.value.find_first_not_of(" \t\r\n\v\f") == std::string::npos) {
        error = "--name must not be blank";
        return false;
    }
    tool.name = argument.value;
    return true;
}

bool RecordReader::addTool(const std::string& type) {
    const std::vector<ToolPlan> known = knownTools();
    const auto ofType = std::count_if(known.begin(), known.end(),
                                      [&type](const ToolPlan& tool) { return tool.type == type; });
    char number[24];
    std::snprintf(number, sizeof number, "_%02d", static_cast<int>(ofType) + 1);
    options_.tools.push_back({type, type + number, {}, {}});
    return true;
}

bool RecordReader::open(const std::string& path, std::string& error) {
    SceneData& scene = options_.opened.emplace();
    if (!readSceneFile(path, scene, error)) {
        options_.failure = ExitCode::BadFile;
        return false;
    }
    options_.openedPath = path;
    options_.start = scene.start;
    options_.rate = scene.rate;
    return true;
}

/// Returns the tools of the opened scene, then those to be placed.
std::vector<ToolPlan> RecordReader::knownTools() const {
    std::vector<ToolPlan> tools = options_.tools;
    if (options_.opened) {
        const std::vector<ToolPlan> opened = listTools(options_.opened->configuration);
        tools.insert(tools.end(), opened.begin(), opened.end());
    }
    return tools;
}

bool RecordReader::readOfPass(const Argument& argument) {
    if (argument.name == "--resimulate")
        options_.passes.emplace_back();
    else if (argument.name == "--out")
        options_.passes.back().out = argument.value;
    else if (argument.name == "--out-curves")
        options_.passes.back().outCurves = argument.value;
    else if (argument.name == "--scene")
        options_.passes.back().scene = argument.value;
    else
        return false;
    return true;
}

bool RecordReader::readOfTake(const Argument& argument, std::string& error) {
    double number = 0.0;
    if (argument.name == "--no-auto-expand") {
        options_.take.autoExpand = false;
    } else if (argument.name == "--undo-redo") {
        options_.checkUndo = true;
    } else if (argument.name == "--table") {
        options_.printTable = true;
    } else if (argument.name == "--open") {
        return open(argument.value, error);
    } else if (argument.name == kAsOption.name) {
        return addCamera(argument, options_.cameras, error);
    } else if (argument.name == kForceOption.name) {
        options_.isForced = true;
    } else if (argument.name == "--report") {
        options_.report = argument.value;
    } else if (argument.name == "--log-input") {
        options_.logInput = argument.value;
    } else if (argument.name == "--latency-bind") {
        return parseBinding("Sent=" + argument.value, options_.latency.emplace(), error);
    } else if (argument.name == "--rate") {
        return readNumber(argument, kLeastRate, kHighestRate, options_.rate, error);
    } else if (argument.name == "--start") {
        return readNumber(argument, kLeastTime, kLatestTime, options_.start, error);
    } else if (argument.name == "--countdown") {
        return readNumber(argument, 0, kLongestCountdown, options_.take.countdownSeconds, error);
    } else if (argument.name == "--slow-motion") {
        return readNumber(argument, 1, kSlowest, options_.take.slowMotion, error);
    } else if (argument.name == "--end") {
        if (!readNumber(argument, kLeastTime, kLatestTime, number, error))
            return false;
        end_ = number;
    } else {
        if (!readNumber(argument, 0.0, kLatestTime, number, error))
            return false;
        seconds_ = number;
    }
    return true;
}

bool RecordReader::finish(std::string& error) {
    constexpr double kDefaultSeconds = 10.0;
    options_.end = end_.value_or(options_.start + seconds_.value_or(kDefaultSeconds));
    if (options_.opened && !end_ && !seconds_ && options_.opened->end > options_.start)
        options_.end = options_.opened->end;
    if (seconds_)
        options_.take.autoExpand = false;
    if (options_.tools.empty() && !options_.opened)
        error = "give at least one --tool, or --open a scene";
    else if (end_ && seconds_)
        error = "--end and --seconds both set the end of the take: give only one";
    else if (options_.end <= options_.start)
        error = "the take ends before its first frame";
    else if (options_.end > kLatestTime)
        error = "the take must end by second " + std::to_string(std::lround(kLatestTime));
    else
        return true;
    return false;
}

} // namespace

std::string recordHelp() {
    return "usage: mirvane-stage record --tool TYPE [OPTIONS] [--resimulate [OPTIONS]]...\n"
           "       mirvane-stage record --open SCENE [OPTIONS] [--resimulate [OPTIONS]]...\n\n"
           "Records a take in real time. Each curve of a tool's objects gets a key at the start,\n"
           "which holds the old value, and one for each frame: N + 1 keys for N frames.\n"
           "Ctrl+C stops the take and keeps it; a second one ends the program at once.\n\n" +
           describe(recordOptions()) + "\nexit codes\n" + describe(kCodes) +
           "\nexample\n"
           "  mirvane-stage record --tool \"Tracked Object\" \\\n"
           "    --bind \"Position X=OSC:/camera/position:0\" --set \"*.deadzone=0\" \\\n"
           "    --seconds 4 --out take.gltf \\\n"
           "    --resimulate --set \"*.multiplier=2\" --out twice.gltf\n";
}

bool readRecordOptions(const std::vector<std::string>& words, RecordOptions& out,
                       std::string& error) {
    std::vector<Argument> arguments;
    if (!readArguments(words, recordOptions(), arguments, error))
        return false;
    RecordReader reader(out);
    // The scene comes first: the others add to it.
    std::stable_partition(arguments.begin(), arguments.end(),
                          [](const Argument& argument) { return argument.name == "--open"; });
    for (const Argument& argument : arguments)
        if (!reader.read(argument, error))
            return false;
    return reader.finish(error);
}

} // namespace Stage
