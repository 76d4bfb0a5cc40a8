#include "core/base/folders.h"

#include "core/base/sdk/log.h"
#include "platform/registry.h"
#include "platform/sdk/files.h"

#include <utility>

namespace MVR {

namespace {

/// Returns false with a line in the log: `keyMissing` if there is no such key, and what
/// `logMissingValue(log)` writes if it doesn't have the value.
template <class LogMissingValue>
bool read(Platform::Hive hive, const char* key, const std::string& name, std::string& value,
          const char* keyMissing, LogMissingValue logMissingValue) {
    Log log(Log::Error);
    switch (Platform::readRegistryValue(hive, key, name, value)) {
    case Platform::RegistryResult::Found:
        return true;
    case Platform::RegistryResult::FileUnreadable:
        log.write("Unable to read the registry", Platform::lastFileError(), Log::OwnLevel);
        [[fallthrough]];
    case Platform::RegistryResult::KeyMissing:
        log.write(keyMissing);
        break;
    case Platform::RegistryResult::ValueMissing:
        logMissingValue(log);
        break;
    }
    return false;
}

} // namespace

std::string resolveDocumentsPath(std::string* replaced) {
    std::string personal;
    const bool isFound = read(Platform::Hive::CurrentUser, Platform::kShellFoldersKey, "Personal",
                              personal, "Unable to find my documents path", [](Log& log) {
                                  log.write("Unable to find my documents registry key");
                              });
    if (isFound && !Platform::createFolders(personal)) {
        const std::string reason = Platform::lastFileError();
        const std::string named = std::exchange(personal, Platform::xdgFolder("Personal"));
        if (replaced != nullptr)
            *replaced = "the documents folder " + named + " can't be made (" + reason + "), so " +
                        personal + " serves";
    }
    return personal.empty() ? personal : personal + R"(\Oskelworks\Mirvane)";
}

std::string readInstallValue(const std::string& name) {
    std::string value;
    const bool isFound = read(Platform::Hive::LocalMachine, Platform::kInstallKey, name, value,
                              "Unable to find Mirvane registry repository", [&name](Log& log) {
                                  log.write("Unable to find registry key", name, Log::OwnLevel);
                              });
    return isFound ? value : "";
}

std::string resolveUserFolder(const std::string& adaptorName) {
    const std::string documents = resolveDocumentsPath();
    return documents.empty() ? documents : documents + R"(\data\)" + adaptorName;
}

} // namespace MVR
