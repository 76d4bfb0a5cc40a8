#include "stage/commands/scene_opening.h"

#include "core/base/sdk/error_code.h"
#include "core/contract/core_faults.h"
#include "stage/commands/commands.h"
#include "stage/commands/outputs.h"
#include "stage/host/session.h"

#include <algorithm>
#include <filesystem>
#include <system_error>

namespace Stage {

namespace {

bool isSameFile(const std::string& path, const std::string& other) {
    std::error_code error;
    return !other.empty() && std::filesystem::equivalent(path, other, error) && !error;
}

/// A scene does without controls that aren't there, and keeps their bindings.
bool isGrave(const MVR::CoreFault& fault) {
    return fault.isToolMissing ||
           MVR::ErrorCode::instance()->find(fault.code).getIdentifier() != "INPUT_CONTROLSMISSING";
}

} // namespace

void tellFault(const std::string& path, const MVR::CoreFault& fault) {
    MVR::CoreFault shown = fault;
    // A tool's model is its name "in" a folder, or a file: both may hold a path of the core.
    std::replace(shown.model.begin(), shown.model.end(), '\\', '/');
    complain(fault.tool.empty() ? toText(shown) : path + ": " + toText(shown));
}

std::optional<ExitCode> openSession(const std::vector<std::string>& words, const std::string& help,
                                    Session& session) {
    InstallValues values;
    if (const auto code = readCommand(words, withCommonOptions({}), help, values))
        return code;
    std::string error;
    if (!session.open(values, error))
        return fail(ExitCode::CoreOrToolMissing, error);
    return std::nullopt;
}

ExitCode openScene(Session& session, const SceneData& data, const SceneOpening& opening) {
    session.openScene(data);
    bool isWhole = true;
    std::string missing;
    for (const MVR::CoreFault& fault : session.getFaults()) {
        if (fault.isToolMissing)
            missing += (missing.empty() ? "\"" : ", \"") + fault.tool + "\"";
        if (isGrave(fault)) {
            tellFault(opening.path, fault);
            isWhole = false;
        }
    }
    if (!missing.empty())
        complain(opening.path + ": these tools of the scene can't be created: " + missing);
    const bool isReplaced =
        std::any_of(opening.targets.begin(), opening.targets.end(),
                    [&opening](const auto& target) { return isSameFile(opening.path, target); });
    if (!missing.empty() && isReplaced && !opening.isForced) {
        return fail(ExitCode::CoreOrToolMissing,
                    opening.path + " would be saved without them: name another file, or give "
                                   "--force");
    }
    return isWhole ? ExitCode::Ok : ExitCode::Incomplete;
}

} // namespace Stage
