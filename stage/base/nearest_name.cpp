#include "stage/base/nearest_name.h"

#include "core/util/sdk/edit_distance.h"

#include <algorithm>
#include <cstddef>

namespace Stage {

namespace {

constexpr std::size_t kMostSlips = 3;

} // namespace

std::string askForNearest(std::string_view word, const std::vector<std::string>& names) {
    const std::string* nearest = nullptr;
    std::size_t least = kMostSlips + 1;
    for (const std::string& name : names) {
        const std::size_t longer = std::max(word.size(), name.size());
        const std::size_t shorter = std::min(word.size(), name.size());
        if (longer - shorter >= least) // no need to count
            continue;
        const std::size_t slips = MVR::Util::editDistance(word, name);
        // Of a short word, few letters may differ.
        if (slips < least && 2 * slips < longer) {
            least = slips;
            nearest = &name;
        }
    }
    return nearest != nullptr ? "; did you mean " + *nearest + "?" : "";
}

} // namespace Stage
