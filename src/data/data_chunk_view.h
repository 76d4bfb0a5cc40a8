#pragma once

#include <cstddef>
#include <cstdint>
#include <limits>
#include <string_view>
#include <vector>

namespace MVR::Util {

// The flat form of a chunk opens with three integers: the size of the payload, the number of
// children, the length of the name.
constexpr std::size_t kChunkHeadSize = 12;

// The largest payload and the largest whole; more would be a negative size.
constexpr std::size_t kMaxFlatSize = std::numeric_limits<std::int32_t>::max();

void storeChunkHead(std::uint8_t* to, std::size_t dataSize, std::size_t childCount,
                    std::size_t nameSize);

// A chunk that is read in place: names and payloads stay in the flat form.
struct DataChunkView {
    std::string_view name;
    const std::uint8_t* data = nullptr;
    std::size_t size = 0;
    std::vector<DataChunkView> children;

    // As `DataChunk::parse`.
    [[nodiscard]] const std::uint8_t* parse(const std::uint8_t* at, const std::uint8_t* end,
                                            std::size_t depth = 1);
    // Returns null if there is none.
    const DataChunkView* child(std::string_view wanted) const;
};

} // namespace MVR::Util
