#include "stage/host/install_values.h"

#include "platform/registry.h"
#include "platform/sdk/files.h"
#include "stage/base/machine.h"
#include "stage/base/options.h"

#include <filesystem>
#include <system_error>

namespace Stage {

namespace {

std::string absolute(const std::string& path) {
    std::error_code error;
    const std::filesystem::path full = std::filesystem::absolute(path, error);
    return error ? path : full.lexically_normal().string();
}

std::string folderOf(const std::string& path) {
    return std::filesystem::path(absolute(path)).parent_path().string();
}

std::string orBeside(const std::string& given, const std::string& corePath, const char* name) {
    return given.empty() ? folderOf(corePath) + "/" + name : absolute(given);
}

/// Returns the user's documents folder, as the core would find it.
std::string documentsFolder() {
    std::string folder;
    (void)MVR::Platform::readRegistryValue(MVR::Platform::Hive::CurrentUser,
                                           MVR::Platform::kShellFoldersKey, "Personal",
                                           folder); // if there is none, the core says so
    return folder;
}

/// Returns the documents folder `named`, which is made if it is missing, or the user's own, of
/// which a line then tells, if it can't be.
std::string makeDocuments(const std::string& named) {
    if (named.empty() || MVR::Platform::createFolders(named))
        return named;
    const std::string reason = MVR::Platform::lastFileError();
    std::string folder = MVR::Platform::xdgFolder("Personal");
    complain("the documents folder " + named + " can't be made (" + reason + "), so " + folder +
             " serves");
    return folder;
}

} // namespace

InstallValuesFile::~InstallValuesFile() {
    if (!path_.empty())
        MVR::Platform::deleteFile(path_);
}

bool InstallValuesFile::write(const InstallValues& values, const std::string& corePath,
                              std::string& error) {
    const std::string documents =
        makeDocuments(values.documents.empty() ? documentsFolder() : absolute(values.documents));
    if (values.data.empty() && values.plugins.empty() && values.documents.empty())
        return true;
    const std::string text = std::string("[") + MVR::Platform::kInstallKey +
                             "]\npath=" + folderOf(corePath) +
                             "\ndatapath=" + orBeside(values.data, corePath, "data") +
                             "\npluginpath=" + orBeside(values.plugins, corePath, "plugins") +
                             "\ndocpath=" + folderOf(corePath) + "/doc\n[" +
                             MVR::Platform::kShellFoldersKey + "]\nPersonal=" + documents + "\n";
    std::error_code fault;
    const std::filesystem::path folder = std::filesystem::temp_directory_path(fault);
    const std::string path =
        (folder / ("mirvane-stage-" + std::to_string(processNumber()) + ".ini")).string();
    if (fault || !MVR::Platform::writeFileAtomic(path, text)) {
        error = "can't write " + path + ": " + MVR::Platform::lastFileError();
        return false;
    }
    path_ = path;
    setEnvironment("MIRVANE_REGISTRY", path);
    return true;
}

} // namespace Stage
