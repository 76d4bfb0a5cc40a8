// The binary block of recorded values. Whatever the bytes, a block is accepted or refused as a
// whole, and what was accepted can be read, written and read again.

#include "core/base/sdk/log.h"
#include "recording/values/animated_variable.h"
#include "require.h"

#include <cstddef>
#include <cstdint>
#include <cstring>
#include <string>

namespace {

using Variable = MVR::Util::AVar_Linear<double>;

bool sameKeys(const Variable& a, const Variable& b) {
    if (a.getKeys().size() != b.getKeys().size())
        return false;
    for (std::size_t i = 0; i < a.getKeys().size(); ++i)
        if (std::memcmp(&a.getKeys()[i], &b.getKeys()[i], sizeof(Variable::Key)) != 0)
            return false;
    return true;
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    MVR::Log::setThreshold(MVR::Log::Critical); // else the log of refusals fills the memory
    Variable variable;
    variable.setKey(1, 2);
    const Variable before = variable;
    if (!variable.readData(data, size)) {
        require(sameKeys(variable, before));
        return 0;
    }
    require(variable.getKeys().size() * Variable::kKeySize <= size - Variable::kHeaderSize);

    std::string block(variable.getDataSize(), '\0');
    variable.writeData(block.data(), block.size());
    Variable again;
    // In a block that contradicts itself all keys have the same time, which is refused.
    if (again.readData(block.data(), block.size()))
        require(sameKeys(again, variable));
    else
        require(variable.getKeys().size() > 1 && variable.getKeys().back().time == -1.0);

    // Use the last bytes as times: in any order each has one answer.
    double time = 0.0;
    if (size >= sizeof(time))
        std::memcpy(&time, data + size - sizeof(time), sizeof(time));
    Variable fresh = variable;
    const double value = variable.getValue(time);
    (void)variable.getValue(-time);
    const double repeated = variable.getValue(time);
    require(std::memcmp(&value, &repeated, sizeof(value)) == 0);
    require(fresh.findNearest(time) == variable.findNearest(time));
    fresh.setKey(time, 3.0);
    fresh.eraseFrom(time);
    require(fresh.getKeys().size() <= variable.getKeys().size());
    return 0;
}
