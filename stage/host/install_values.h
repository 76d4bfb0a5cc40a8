#pragma once

#include <string>

namespace Stage {

/// What the user says of the installation. Folders are empty for the usual ones.
struct InstallValues {
    std::string core;       ///< the core library itself
    std::string data;       ///< shared data; its folder "unidevice" holds the drivers
    std::string plugins;    ///< tool libraries
    std::string documents;  ///< the user's documents: settings, profiles, the log
    bool isVerbose = false; ///< print the core's log too
};

/// Tells the core, before it is loaded, where the folders are: by a registry file for this process
/// alone, which this object deletes at its end. Does nothing if all folders are the usual ones.
class InstallValuesFile {
public:
    InstallValuesFile() = default;
    InstallValuesFile(const InstallValuesFile&) = delete;
    InstallValuesFile& operator=(const InstallValuesFile&) = delete;
    ~InstallValuesFile();

    /// Returns false, with the reason in `error`, if the file can't be written.
    [[nodiscard]] bool write(const InstallValues& values, const std::string& corePath,
                             std::string& error);

private:
    std::string path_;
};

} // namespace Stage
