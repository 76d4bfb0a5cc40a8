#include "stage/commands/model_files.h"

#include "core/base/sdk/error_code.h"
#include "stage/commands/commands.h"
#include "stage/commands/outputs.h"
#include "stage/commands/scene_opening.h"
#include "stage/export/gltf_writer.h"
#include "stage/host/session.h"

#include <cstdio>
#include <optional>

namespace Stage {

namespace {

// Of both commands.
const std::vector<ExitCode> kCodes = {ExitCode::Ok,
                                      ExitCode::Usage,
                                      ExitCode::CoreOrToolMissing,
                                      ExitCode::BadBinding,
                                      ExitCode::OutputNotWritten,
                                      ExitCode::BadFile,
                                      ExitCode::Incomplete};

std::vector<Option> saveOptions() {
    return withCommonOptions({
        {"SCENE", nullptr, "a scene saved by record, resimulate or model load"},
        {"MODEL", nullptr, "the file to write, such as dolly.prm"},
        {"--tool", "NAME", "this tool and all below it; by default all tools"},
        {kForceOption.name, nullptr, "write it even if tools of the scene can't be created"},
    });
}

std::vector<Option> loadOptions() {
    return withCommonOptions({
        {"MODEL", nullptr, "a model's file, such as dolly.prm"},
        {"--open", "SCENE", "create its tools in this scene; by default in a new one"},
        {"--scene", "FILE", "save the scene"},
        kForceOption,
        {"--out", "FILE", "write the scene as glTF"},
        kAsOption,
        {"--model", "FILE",
         "write its first tool and all below it as a model, for\nexample to turn a hand-written "
         "text into a model"},
    });
}

std::string saveHelp() {
    return "usage: mirvane-stage model save SCENE MODEL [OPTIONS]\n\n"
           "Writes tools of a saved scene as a model: the tools with their bindings and panel "
           "values,\nand their objects with transforms and meshes, but no recorded values.\n\n" +
           describe(saveOptions()) + "\nexit codes\n" + describe(kCodes) +
           "\nexample\n  mirvane-stage model save shot.scene dolly.prm --tool Dolly\n";
}

std::string loadHelp() {
    return "usage: mirvane-stage model load MODEL [OPTIONS]\n\n"
           "Creates the tools of a model, and lists those created and what failed. Whatever can "
           "be\n"
           "created is created, and saved.\n\n" +
           describe(loadOptions()) + "\nexit codes\n" + describe(kCodes) +
           "\nexample\n  mirvane-stage model load dolly.prm --open set.scene --scene set.scene\n";
}

/// The options of both commands; each uses some of them.
struct ModelOptions {
    InstallValues install;
    std::string model;
    std::string opened; ///< scene to open; empty for a new one
    std::string tool;
    std::string scene; ///< file that the scene is saved to; empty for none
    std::string out;   ///< glTF file; empty for none
    std::string copy;  ///< file that the model is written to again; empty for none
    ShownAsCameras cameras;
    bool isForced = false;
};

bool take(ModelOptions& options, const Argument& argument, std::string& error) {
    if (argument.name == kAsOption.name)
        return addCamera(argument, options.cameras, error);
    if (argument.name == kForceOption.name) {
        options.isForced = true;
        return true;
    }
    std::string& value = argument.name == "MODEL"     ? options.model
                         : argument.name == "--tool"  ? options.tool
                         : argument.name == "--scene" ? options.scene
                         : argument.name == "--out"   ? options.out
                         : argument.name == "--model" ? options.copy
                                                      : options.opened;
    value = argument.value;
    return true;
}

/// Attaches the core and restores the scene, if there is one. `target` is the file that the scene's
/// tools will be written to. Returns a code as openScene() does.
ExitCode open(Session& session, const ModelOptions& options, const std::string& target) {
    std::string error;
    SceneData data;
    if (!options.opened.empty() && !readSceneFile(options.opened, data, error))
        return fail(ExitCode::BadFile, error);
    if (!session.open(options.install, error))
        return fail(ExitCode::CoreOrToolMissing, error);
    return options.opened.empty()
               ? ExitCode::Ok
               : openScene(session, data, {options.opened, {target}, options.isForced});
}

/// Prints the faults of the last operation, and returns their number.
std::size_t tellFaults(Session& session, const std::string& model) {
    const std::vector<MVR::CoreFault> faults = session.getFaults();
    for (const MVR::CoreFault& fault : faults)
        tellFault(model, fault);
    return faults.size();
}

/// Returns the exit code for a code of CoreModels::load() or save().
ExitCode toExitCode(std::int32_t code) {
    if (code == 0)
        return ExitCode::Ok;
    const std::string& identifier = MVR::ErrorCode::instance()->find(code).getIdentifier();
    return identifier == "MODEL_NOTOOL"       ? ExitCode::BadBinding
           : identifier == "MODEL_UNWRITABLE" ? ExitCode::OutputNotWritten
           : identifier == "MODEL_UNREADABLE" || identifier == "MODEL_INVALID"
               ? ExitCode::BadFile
               : ExitCode::Incomplete;
}

ExitCode save(Session& session, const std::string& tool, const std::string& model) {
    const ExitCode code = toExitCode(session.getModels().save(tool, model));
    if (code == ExitCode::BadBinding)
        return fail(code, session.noTool(tool));
    if (code != ExitCode::Ok)
        tellFaults(session, model);
    return code;
}

/// Ends a load: prints the tools that were created, and the faults.
void tellSummary(const ModelOptions& options, const std::vector<const PlacedTool*>& created,
                 std::size_t faults) {
    const auto ending = [](std::size_t count) { return count == 1 ? "" : "s"; };
    std::printf("%s: %zu tool%s created, %zu fault%s\n", options.model.c_str(), created.size(),
                ending(created.size()), faults, ending(faults));
    for (const PlacedTool* tool : created)
        std::printf("  %s (%s)\n", tool->plan.name.c_str(), tool->plan.type.c_str());
}

ExitCode load(Session& session, const ModelOptions& options) {
    std::string error;
    ExitCode result = toExitCode(session.getModels().load(options.model, ""));
    const std::size_t faults = tellFaults(session, options.model);
    if (result == ExitCode::BadFile)
        return result;
    const std::vector<const PlacedTool*> created = session.adoptTools();
    tellSummary(options, created, faults);
    if (faults > 0)
        result = ExitCode::Incomplete;
    if (created.empty())
        return result;
    if (const ExitCode code = checkCameras(session.scene, options.cameras); code != ExitCode::Ok)
        return code;
    std::vector<const StageNode*> nodes;
    for (const auto& node : session.scene.getNodes())
        nodes.push_back(node.get());
    ExitCode written =
        writeNodes(nodes, session.timeline.getStart(), options.cameras, options.out, {});
    if (!options.scene.empty() && !session.saveScene(options.scene, error))
        written = fail(ExitCode::OutputNotWritten, error);
    if (!options.copy.empty())
        written = firstFailure({written, save(session, created.front()->plan.name, options.copy)});
    return firstFailure({written, result});
}

} // namespace

ExitCode modelSaveCommand(const std::vector<std::string>& words) {
    ModelOptions options;
    const auto takeOne = [&options](const Argument& argument, std::string& error) {
        return take(options, argument, error);
    };
    if (const auto code = readCommand(words, saveOptions(), saveHelp(), options.install, takeOne))
        return *code;
    Session session;
    ExitCode code = checkOutputs({options.model}, {options.opened});
    if (code != ExitCode::Ok)
        return code;
    // The model would lack tools of the scene.
    code = open(session, options, options.opened);
    if (code != ExitCode::Ok && code != ExitCode::Incomplete)
        return code;
    return firstFailure({save(session, options.tool, options.model), code});
}

ExitCode modelLoadCommand(const std::vector<std::string>& words) {
    ModelOptions options;
    const auto takeOne = [&options](const Argument& argument, std::string& error) {
        return take(options, argument, error);
    };
    if (const auto code = readCommand(words, loadOptions(), loadHelp(), options.install, takeOne))
        return *code;
    Session session;
    ExitCode code = checkOutputs({options.scene}, {options.model});
    if (code == ExitCode::Ok) {
        code = checkOutputs({options.out, options.copy}, {options.model, options.opened},
                            {options.scene});
    }
    if (code != ExitCode::Ok)
        return code;
    code = open(session, options, options.scene);
    if (code != ExitCode::Ok && code != ExitCode::Incomplete)
        return code;
    return firstFailure({load(session, options), code});
}

} // namespace Stage
