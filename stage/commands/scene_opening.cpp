#include "stage/commands/scene_opening.h"

#include "core/contract/core_faults.h"
#include "plugins/contract/model_words.h"
#include "stage/commands/outputs.h"
#include "stage/host/session.h"

#include <filesystem>
#include <system_error>

namespace Stage {

namespace {

bool isSameFile(const std::string& path, const std::string& other) {
    std::error_code error;
    return !other.empty() && std::filesystem::equivalent(path, other, error) && !error;
}

} // namespace

void tellFault(const std::string& path, const MVR::CoreFault& fault) {
    complain(fault.tool.empty() ? toText(fault) : path + ": " + toText(fault));
}

ExitCode openScene(Session& session, const SceneData& data, const SceneOpening& opening) {
    const std::vector<std::string> missing = session.openScene(data);
    bool isWhole = missing.empty();
    for (const MVR::CoreFault& fault : session.getFaults()) {
        // A scene does without controls that aren't there, and keeps their bindings.
        if (fault.element != MVR::ModelWord::kInputProfile) {
            tellFault(opening.path, fault);
            isWhole = false;
        }
    }
    std::string names;
    for (const std::string& tool : missing) {
        names += (names.empty() ? "" : ", ") + tool;
    }
    if (!missing.empty()) {
        complain(opening.path + ": these tools of the scene can't be created: " + names);
    }
    if (!missing.empty() && isSameFile(opening.path, opening.target) && !opening.isForced) {
        return fail(ExitCode::CoreOrToolMissing,
                    opening.target + " would be saved without them: name another file, or give "
                                     "--force");
    }
    return isWhole ? ExitCode::Ok : ExitCode::Incomplete;
}

} // namespace Stage
