#pragma once

#include <algorithm>
#include <cctype>
#include <cstddef>
#include <numeric>
#include <string_view>
#include <utility>
#include <vector>

namespace MVR::Util {

/// Returns the fewest letters to add, remove, change or swap with the next one to turn one word
/// into the other. Capitals don't count.
inline std::size_t editDistance(std::string_view from, std::string_view to) {
    const auto isSame = [&](std::size_t i, std::size_t j) {
        return std::tolower(static_cast<unsigned char>(from[i])) ==
               std::tolower(static_cast<unsigned char>(to[j]));
    };
    std::vector<std::size_t> last(to.size() + 1); // the row before `row`
    std::vector<std::size_t> row(to.size() + 1);
    std::iota(row.begin(), row.end(), std::size_t{0});
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

} // namespace MVR::Util
