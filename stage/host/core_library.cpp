#include "stage/host/core_library.h"

#include "platform/sdk/files.h"

#include <cstdlib>
#include <filesystem>

namespace Stage {

std::string findCore(const std::string& option) {
    if (!option.empty())
        return MVR::Platform::fileExists(option) ? option : std::string();
    if (const char* named = std::getenv("MIRVANE_CORE"); named != nullptr && *named != '\0')
        return MVR::Platform::fileExists(named) ? named : std::string();
    const std::filesystem::path folder =
        std::filesystem::path(MVR::Platform::ownModulePath()).parent_path();
    const std::string name = "libcore" + MVR::Platform::libraryPattern().substr(1);
    for (const char* place : {"../lib/mirvane", "."}) {
        const std::string path = (folder / place / name).lexically_normal().string();
        if (MVR::Platform::fileExists(path))
            return path;
    }
    return {};
}

bool CoreLibrary::load(const std::string& path, std::string& error) {
    if (!library_.load(path, error))
        return false;
    attach_ = library_.find<MVR::AttachFunction>("attach");
    detach_ = library_.find<MVR::DetachFunction>("detach");
    getVersion_ = library_.find<MVR::GetVersionFunction>("getVersion");
    pump_ = library_.find<MVR::PumpEventsFunction>("pumpEvents");
    if (attach_ == nullptr || detach_ == nullptr || getVersion_ == nullptr || pump_ == nullptr) {
        error = path + " isn't a core: it lacks attach, detach, getVersion or pumpEvents";
    } else if (getVersion_() != MVR::kCoreVersion) {
        error = path + " is a core of version " + std::to_string(getVersion_()) +
                "; this stage was built for version " + std::to_string(MVR::kCoreVersion);
    } else {
        return true;
    }
    library_.free();
    return false;
}

} // namespace Stage
