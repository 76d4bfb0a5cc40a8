#include "core/base/folders.h"

#include "core/base/sdk/log.h"
#include "platform/registry.h"
#include "platform/sdk/files.h"

namespace MVR {

namespace {

void logUnreadableRegistry() {
    Log(Log::Error).write("Unable to read the registry", Platform::lastFileError(), Log::OwnLevel);
}

} // namespace

std::string resolveDocumentsPath() {
    std::string personal;
    switch (Platform::readRegistryValue(Platform::Hive::CurrentUser, Platform::kShellFoldersKey,
                                        "Personal", personal)) {
    case Platform::RegistryResult::Found:
        return personal + R"(\Oskelworks\Mirvane)";
    case Platform::RegistryResult::FileUnreadable:
        logUnreadableRegistry();
        [[fallthrough]];
    case Platform::RegistryResult::KeyMissing:
        Log(Log::Error).write("Unable to find my documents path");
        break;
    case Platform::RegistryResult::ValueMissing:
        Log(Log::Error).write("Unable to find my documents registry key");
        break;
    }
    return {};
}

std::string readInstallValue(const std::string& name) {
    std::string value;
    switch (Platform::readRegistryValue(Platform::Hive::LocalMachine, Platform::kInstallKey, name,
                                        value)) {
    case Platform::RegistryResult::Found:
        return value;
    case Platform::RegistryResult::FileUnreadable:
        logUnreadableRegistry();
        [[fallthrough]];
    case Platform::RegistryResult::KeyMissing:
        Log(Log::Error).write("Unable to find Mirvane registry repository");
        break;
    case Platform::RegistryResult::ValueMissing:
        Log(Log::Error).write("Unable to find registry key", name, Log::OwnLevel);
        break;
    }
    return {};
}

std::string resolveUserFolder(const std::string& adaptorName) {
    const std::string documents = resolveDocumentsPath();
    return documents.empty() ? documents : documents + R"(\data\)" + adaptorName;
}

} // namespace MVR
