// Packets of the OSC port. One that is accepted must keep the reader's promises.
#include "osc_reader.h"

#include <cmath>
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <vector>

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    std::vector<OscValue> values;
    const char* bytes = reinterpret_cast<const char*>(data);
    if (!readOscPacket(bytes, size, values) && !values.empty())
        std::abort();
    for (const OscValue& value : values) {
        const bool inside = value.address.data() >= bytes &&
                            value.address.data() + value.address.size() <= bytes + size;
        if (!inside || !isOscAddress(value.address) || value.index < 0 ||
            value.index >= kMaxOscArguments || !std::isfinite(value.value))
            std::abort();
    }
    return 0;
}
