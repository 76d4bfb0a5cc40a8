// A registry file of any bytes: each value found fits its buffer and is in the file.

#include "input_file.h"
#include "platform/registry.h"

#include <cstdlib>
#include <string_view>

using namespace MVR::Platform;

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    setenv("MIRVANE_REGISTRY", writeInput(data, size).c_str(), 1);
    const std::string_view bytes(reinterpret_cast<const char*>(data), size);
    for (const char* key : {"SOFTWARE\\Oskelworks\\Lensetta", "", "a"})
        for (const char* name : {"path", "", "Personal"}) {
            std::string value = "kept";
            const RegistryResult result = readRegistryValue(Hive::LocalMachine, key, name, value);
            const bool isFound = result == RegistryResult::Found;
            if (isFound ? value.size() >= kRegistryBufferBytes ||
                              bytes.find(value) == std::string_view::npos ||
                              value.find('\n') != std::string::npos
                        : value != "kept" || result == RegistryResult::FileUnreadable)
                std::abort();
        }
    return 0;
}
