#include "data/data_chunk_view.h"

#include "data/little_endian.h"
#include "data/sdk/data_chunk.h"

#include <algorithm>

namespace MVR::Util {

void storeChunkHead(std::uint8_t* to, std::size_t dataSize, std::size_t childCount,
                    std::size_t nameSize) {
    storeLittle32(to, static_cast<std::uint32_t>(dataSize));
    storeLittle32(to + 4, static_cast<std::uint32_t>(childCount));
    storeLittle32(to + 8, static_cast<std::uint32_t>(nameSize));
}

const std::uint8_t* DataChunkView::parse(const std::uint8_t* at, const std::uint8_t* end,
                                         std::size_t depth) {
    if (!at || depth > DataChunk::kMaxDepth || end - at < std::ptrdiff_t(kChunkHeadSize))
        return nullptr;
    const std::size_t dataSize = loadLittle32(at);
    const std::size_t childCount = loadLittle32(at + 4);
    const std::size_t nameSize = loadLittle32(at + 8);
    at += kChunkHeadSize;
    std::size_t left = static_cast<std::size_t>(end - at);
    if (dataSize > kMaxFlatSize || nameSize > DataChunk::kMaxName || nameSize > left ||
        dataSize > left - nameSize)
        return nullptr;
    left -= nameSize + dataSize;
    if (childCount > left / kChunkHeadSize)
        return nullptr;
    name = {reinterpret_cast<const char*>(at), nameSize};
    data = at + nameSize;
    size = dataSize;
    at = data + size;
    // Nothing is reserved: each level could ask for as much as the whole buffer holds.
    children.clear();
    for (std::size_t i = 0; i < childCount; ++i) {
        DataChunkView next;
        at = next.parse(at, end, depth + 1);
        if (!at)
            return nullptr;
        children.push_back(std::move(next));
    }
    return at;
}

const DataChunkView* DataChunkView::child(std::string_view wanted) const {
    const auto found = std::find_if(children.begin(), children.end(),
                                    [&](const DataChunkView& c) { return c.name == wanted; });
    return found == children.end() ? nullptr : &*found;
}

} // namespace MVR::Util
