// Decompresses any bytes within the bounds of what they hold, and compresses any bytes and gets
// them back.

#include "data/sdk/byte_buffer.h"

#include <cstdint>
#include <cstdlib>

using MVR::ByteBuffer;

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const ByteBuffer input(data, size);
    const ByteBuffer decoded = input.decompress();
    // A byte needs a bit or more; only a block of one symbol has no payload.
    if (decoded.size() > 8 * size && !(size >= 16 && data[8] == 1))
        std::abort();
    if (!(input.compress().decompress() == input))
        std::abort();
    return 0;
}
