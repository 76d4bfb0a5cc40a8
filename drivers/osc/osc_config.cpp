#include "osc_config.h"

#include "data/sdk/tag.h"
#include "machine.h"

#include <cstdlib>

namespace {

constexpr std::int32_t kLargestPort = 65535;

} // namespace

std::string oscConfigPath() {
    const char* named = std::getenv("MIRVANE_OSC_CONFIG");
    return named && *named ? named : ownLibraryFolder() + "/osc.xml";
}

OscConfig loadOscConfig(const std::string& path) {
    OscConfig config;
    MVR::Tag file;
    const std::int32_t code = file.load(path);
    if (code == MVR::Tag::kNotOpened)
        return config;
    if (code != 0 || !file.hasName("osc")) {
        config.fault = "not a configuration, ignored: " + path;
        return config;
    }
    if (const std::string& address = file.child("address").value(); !address.empty())
        config.address = address;
    if (const MVR::Tag& port = file.child("port"); !port.isEmpty()) {
        std::int32_t number = 0;
        if (port.child(0).as(number) && number > 0 && number <= kLargestPort)
            config.port = number;
        else
            config.fault = "port is not a number from 1 to 65535, ignored: " + path;
    }
    return config;
}
