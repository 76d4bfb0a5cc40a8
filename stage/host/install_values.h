#pragma once

#include <string>

namespace Stage {

/// Folders that are used in place of those of the installation; empty for the usual ones.
struct InstallValues {
    std::string core;      ///< the core library itself
    std::string data;      ///< shared data; drivers lie in its folder "unidevice"
    std::string plugins;   ///< tool libraries
    std::string documents; ///< the user's documents: settings, profiles, the log
};

/// The folder of the tool libraries, and that of the drivers, that go with the core at `corePath`.
std::string toolFolder(const InstallValues& values, const std::string& corePath);
std::string driverFolder(const InstallValues& values, const std::string& corePath);

/// Tells the core, before it is loaded, where the folders are: through a registry file of this
/// process's own, which goes with this object. Does nothing if all folders are the usual ones.
class InstallValuesFile {
public:
    InstallValuesFile() = default;
    InstallValuesFile(const InstallValuesFile&) = delete;
    InstallValuesFile& operator=(const InstallValuesFile&) = delete;
    ~InstallValuesFile();

    /// False, with the reason in `error`, if the file can't be written.
    [[nodiscard]] bool write(const InstallValues& values, const std::string& corePath,
                             std::string& error);

private:
    std::string path_;
};

} // namespace Stage
