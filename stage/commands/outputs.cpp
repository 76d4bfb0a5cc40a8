#include "stage/commands/outputs.h"

#include "platform/sdk/files.h"
#include "stage/export/curve_table.h"
#include "stage/export/gltf_writer.h"

#include <algorithm>
#include <cstdio>
#include <filesystem>
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

} // namespace

ExitCode checkOutputs(const std::vector<std::string>& paths,
                      const std::vector<std::string>& sources) {
    std::vector<std::filesystem::path> taken;
    for (const std::string& source : sources)
        taken.push_back(fileOf(source));
    for (const std::string& path : paths) {
        const std::filesystem::path file = fileOf(path);
        const auto same = std::find(taken.begin(), taken.end(), file);
        if (!file.empty() && same != taken.end()) {
            const bool isSource = same - taken.begin() < static_cast<long>(sources.size());
            return fail(ExitCode::Usage,
                        path + (isSource ? " is read here, and another kind of file would "
                                           "replace it"
                                         : " would be written twice"));
        }
        taken.push_back(file);
    }
    for (const std::string& path : paths) {
        const std::filesystem::path folder = std::filesystem::path(path).parent_path();
        std::error_code error;
        if (!folder.empty() && !std::filesystem::is_directory(folder, error)) {
            return fail(ExitCode::OutputNotWritten,
                        "can't write " + path + ": there is no folder " + folder.string());
        }
        if (std::filesystem::is_directory(path, error))
            return fail(ExitCode::OutputNotWritten, "can't write " + path + ": it is a folder");
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
                    const std::string& out, const std::string& outCurves) {
    const ExitCode scene = out.empty() ? ExitCode::Ok : writeOutput(out, toGltf(nodes, start));
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
