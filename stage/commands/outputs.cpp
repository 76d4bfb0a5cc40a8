#include "stage/commands/outputs.h"

#include "platform/sdk/files.h"
#include "stage/base/nearest_name.h"
#include "stage/export/curve_table.h"
#include "stage/export/gltf_writer.h"
#include "stage/scene/scene.h"

#include <algorithm>
#include <cstdio>
#include <filesystem>
#include <string_view>
#include <system_error>

namespace Stage {

ExitCode fail(ExitCode code, const std::string& message) {
    complain(message);
    return code;
}

namespace {

/// Returns the one path of a file that has several; empty for none and for a device.
std::filesystem::path fileOf(const std::string& path) {
    std::error_code error;
    const bool isDevice =
        std::filesystem::exists(path, error) && !std::filesystem::is_regular_file(path, error);
    if (path.empty() || isDevice)
        return {};
    return std::filesystem::weakly_canonical(std::filesystem::absolute(path, error), error);
}

/// Returns Ok if the file can be written, as far as can be known beforehand.
ExitCode checkPlace(const std::string& path) {
    const std::filesystem::path folder = std::filesystem::path(path).parent_path();
    std::error_code error;
    if (!folder.empty() && !std::filesystem::is_directory(folder, error)) {
        return fail(ExitCode::OutputNotWritten,
                    "can't write " + path + ": there is no folder " + folder.string());
    }
    if (std::filesystem::is_directory(path, error))
        return fail(ExitCode::OutputNotWritten, "can't write " + path + ": it is a folder");
    return ExitCode::Ok;
}

/// A scene that nobody can open again is lost.
ExitCode checkScene(const std::string& path) {
    std::error_code error;
    const std::filesystem::file_status status = std::filesystem::status(path, error);
    if (!std::filesystem::is_fifo(status) && !std::filesystem::is_socket(status))
        return ExitCode::Ok;
    return fail(ExitCode::OutputNotWritten,
                "can't write " + path + ": it is a pipe, which can't keep a scene");
}

} // namespace

ExitCode checkOutputs(const std::vector<std::string>& paths,
                      const std::vector<std::string>& sources,
                      const std::vector<std::string>& scenes) {
    std::vector<std::filesystem::path> reads;
    for (const std::string& source : sources)
        reads.push_back(fileOf(source));
    std::vector<std::string> outputs = paths;
    outputs.insert(outputs.end(), scenes.begin(), scenes.end());
    std::vector<std::filesystem::path> written;
    for (const std::string& path : outputs) {
        const std::filesystem::path file = fileOf(path);
        const bool isScene = written.size() >= paths.size();
        const auto isAmong = [&file](const auto& files) {
            return !file.empty() && std::find(files.begin(), files.end(), file) != files.end();
        };
        if (!isScene && isAmong(reads)) {
            return fail(ExitCode::Usage,
                        path + " is read here, and another kind of file would replace it");
        }
        if (isAmong(written))
            return fail(ExitCode::Usage, path + " would be written twice");
        written.push_back(file);
    }
    ExitCode code = ExitCode::Ok;
    for (std::size_t i = 0; i < outputs.size() && code == ExitCode::Ok; ++i) {
        code = checkPlace(outputs[i]);
        if (code == ExitCode::Ok && i >= paths.size())
            code = checkScene(outputs[i]);
    }
    return code;
}

bool addCamera(const Argument& argument, ShownAsCameras& out, std::string& error) {
    constexpr std::string_view kNamed = "camera:";
    const std::string_view value = argument.value;
    if (value == "camera") {
        out.isEachMoving = true;
    } else if (value.size() > kNamed.size() && value.substr(0, kNamed.size()) == kNamed) {
        out.names.emplace_back(value.substr(kNamed.size()));
    } else {
        error = argument.name + " must be camera or camera:OBJECT, not \"" + argument.value + "\"";
        return false;
    }
    return true;
}

ExitCode checkCameras(const Scene& scene, const ShownAsCameras& cameras) {
    std::vector<std::string> names;
    for (const auto& node : scene.getNodes())
        names.push_back(node->getSceneName());
    for (const std::string& name : cameras.names) {
        if (std::find(names.begin(), names.end(), name) == names.end()) {
            return fail(ExitCode::BadBinding, "the scene has no object named \"" + name + "\"" +
                                                  askForNearest(name, names));
        }
    }
    return ExitCode::Ok;
}

ExitCode writeOutput(const std::string& path, const std::string& bytes) {
    if (path.empty() || MVR::Platform::writeFileAtomic(path, bytes))
        return ExitCode::Ok;
    return fail(ExitCode::OutputNotWritten,
                "can't write " + path + ": " + MVR::Platform::lastFileError());
}

ExitCode writeNodes(const std::vector<const StageNode*>& nodes, double start,
                    const ShownAsCameras& cameras, const std::string& out,
                    const std::string& outCurves) {
    const ExitCode scene =
        out.empty() ? ExitCode::Ok : writeOutput(out, toGltf(nodes, start, cameras));
    const ExitCode curves =
        outCurves.empty() ? ExitCode::Ok : writeOutput(outCurves, toCurveTable(nodes));
    return firstFailure({scene, curves});
}

ExitCode flushOutput(ExitCode code) {
    const bool isFlushed = std::fflush(stdout) == 0;
    if (isFlushed && std::ferror(stdout) == 0)
        return code;
    const ExitCode lost = fail(ExitCode::OutputNotWritten, "can't write the output");
    return firstFailure({code, lost});
}

ExitCode firstFailure(std::initializer_list<ExitCode> codes) {
    for (const ExitCode code : codes)
        if (code != ExitCode::Ok)
            return code;
    return ExitCode::Ok;
}

} // namespace Stage
