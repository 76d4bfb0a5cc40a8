#include "stage/install_values.h"

#include "platform/files.h"
#include "stage/machine.h"

#include <cstdlib>
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

/// The user's documents folder, as the desktop has it in its list of folders.
std::string documentsFolder() {
    const char* home = std::getenv("HOME");
    const std::string homeFolder = home != nullptr ? home : ".";
    const char* config = std::getenv("XDG_CONFIG_HOME");
    std::string list;
    if (MVR::Platform::readFile(
            (config != nullptr && *config != '\0' ? std::string(config) : homeFolder + "/.config") +
                "/user-dirs.dirs",
            list)) {
        const std::string key = "XDG_DOCUMENTS_DIR=\"";
        const std::size_t start = list.find(key);
        const std::size_t end = list.find('"', start + key.size());
        if (start != std::string::npos && end != std::string::npos) {
            std::string folder = list.substr(start + key.size(), end - start - key.size());
            return folder.rfind("$HOME", 0) == 0 ? homeFolder + folder.substr(5) : folder;
        }
    }
    return homeFolder + "/Documents";
}

} // namespace

std::string toolFolder(const InstallValues& values, const std::string& corePath) {
    return orBeside(values.plugins, corePath, "plugins");
}

std::string driverFolder(const InstallValues& values, const std::string& corePath) {
    return orBeside(values.data, corePath, "data") + "/unidevice";
}

InstallValuesFile::~InstallValuesFile() {
    if (!path_.empty()) {
        MVR::Platform::deleteFile(path_);
    }
}

bool InstallValuesFile::write(const InstallValues& values, const std::string& corePath,
                              std::string& error) {
    if (values.data.empty() && values.plugins.empty() && values.documents.empty()) {
        return true;
    }
    const std::string documents =
        values.documents.empty() ? documentsFolder() : absolute(values.documents);
    const std::string text =
        "[SOFTWARE\\Oskelworks\\Lensetta]\npath=" + folderOf(corePath) +
        "\ndatapath=" + orBeside(values.data, corePath, "data") +
        "\npluginpath=" + toolFolder(values, corePath) + "\ndocpath=" + folderOf(corePath) +
        "/doc\n[Software\\Microsoft\\Windows\\CurrentVersion\\Explorer\\Shell Folders]\nPersonal=" +
        documents + "\n";
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
