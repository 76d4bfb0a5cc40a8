#include "plugins/model/model_paths.h"

#include "core/base/folders.h"
#include "core/base/sdk/log.h"
#include "data/xml_resources.h"
#include "platform/sdk/files.h"

#include <initializer_list>

namespace MVR {
namespace {

bool isSeparator(char c) {
    return c == '/' || c == '\\';
}

bool isAbsolute(const std::string& path) {
    return !path.empty() && isSeparator(path.front());
}

/// Both are canonical. The root of the file system holds everything, so being below it proves
/// nothing.
bool isBelow(const std::string& path, const std::string& folder) {
    return folder.size() > 1 && path.size() > folder.size() &&
           path.compare(0, folder.size(), folder) == 0 && path[folder.size()] == '/';
}

bool isAllowed(const std::string& file, const std::string& modelFolder) {
    if (!modelFolder.empty() && isBelow(file, Platform::canonicalPath(modelFolder)))
        return true;
    for (const std::string& folder : {resolveDocumentsPath(), readInstallValue("datapath")})
        if (!folder.empty() && isBelow(file, Platform::canonicalPath(folder)))
            return true;
    return false;
}

} // namespace

std::string findModelFile(const std::string& modelFolder, const std::string& name) {
    const std::string expanded = expandPathMacros(name);
    std::string path;
    if (!modelFolder.empty())
        path = modelFolder + "\\" + expanded;
    // A name that only looks absolute may be beside the model.
    if (isAbsolute(expanded) && (path.empty() || !Platform::fileExists(path)))
        path = expanded;
    if (name.empty() || path.empty() || !Platform::fileExists(path)) {
        Log(Log::Warning).write("File of a model not found", name, Log::OwnLevel);
        return {};
    }
    std::string file = Platform::canonicalPath(path);
    if (isAllowed(file, modelFolder))
        return file;
    Log(Log::Warning)
        .write("File of a model not found: it leads outside the model's folder", name,
               Log::OwnLevel);
    return {};
}

} // namespace MVR
