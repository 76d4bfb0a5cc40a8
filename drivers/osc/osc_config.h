#pragma once

#include <cstdint>
#include <string>

/// Where the driver listens.
struct OscConfig {
    std::string address = "127.0.0.1"; ///< numeric; "0.0.0.0" for all of the machine's networks
    std::int32_t port = 9000;          ///< 1 to 65535; in code also 0, for any that is free
    std::string fault;                 ///< what of the file was ignored, and why; "" for nothing
};

/// Returns the path of the configuration: what the variable MIRVANE_OSC_CONFIG names, else
/// "osc.xml" beside the driver library.
std::string oscConfigPath();

/// Reads the file. Values that are missing or wrong keep the defaults above; wrong ones are a
/// fault.
OscConfig loadOscConfig(const std::string& path);
