#include "stage/base/nearest_name.h"

#include <algorithm>
#include <cctype>
#include <cstddef>

namespace Stage {

namespace {

constexpr std::size_t kMostSlips = 3;

char toSmall(char letter) {
    return static_cast<char>(std::tolower(static_cast<unsigned char>(letter)));
}

/// Returns the fewest letters to add, remove, change or swap with the next one to turn one word
/// into the other.
std::size_t countSlips(std::string_view from, std::string_view to) {
    std::vector<std::size_t> last(to.size() + 1); // the row before `row`
    std::vector<std::size_t> row(to.size() + 1);
    for (std::size_t i = 0; i < row.size(); ++i)
        row[i] = i;
    const auto isSame = [&](std::size_t i, std::size_t j) {
        return toSmall(from[i]) == toSmall(to[j]);
    };
    for (std::size_t i = 0; i < from.size(); ++i) {
        std::vector<std::size_t> next(to.size() + 1, i + 1);
        for (std::size_t j = 0; j < to.size(); ++j) {
            next[j + 1] = std::min({next[j] + 1, row[j + 1] + 1, row[j] + (isSame(i, j) ? 0 : 1)});
            if (i > 0 && j > 0 && isSame(i, j - 1) && isSame(i - 1, j))
                next[j + 1] = std::min(next[j + 1], last[j - 1] + 1);
        }
        last = std::move(row);
        row = std::move(next);
    }
    return row.back();
}

} // namespace

std::string askForNearest(std::string_view word, const std::vector<std::string>& names) {
    const std::string* nearest = nullptr;
    std::size_t least = kMostSlips + 1;
    for (const std::string& name : names) {
        const std::size_t longer = std::max(word.size(), name.size());
        const std::size_t shorter = std::min(word.size(), name.size());
        if (longer - shorter >= least) // no need to count
            continue;
        const std::size_t slips = countSlips(word, name);
        // Of a short word, few letters may differ.
        if (slips < least && 2 * slips < longer) {
            least = slips;
            nearest = &name;
        }
    }
    return nearest != nullptr ? "; did you mean " + *nearest + "?" : "";
}

} // namespace Stage
