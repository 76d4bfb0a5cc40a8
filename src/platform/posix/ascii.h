#pragma once

#include <algorithm>
#include <string_view>

/// Names that match in any case of their ASCII letters, as those of files and of the registry do.
namespace MVR::Platform {

inline char lowerAscii(char c) {
    return c >= 'A' && c <= 'Z' ? char(c - 'A' + 'a') : c;
}

inline bool equalButCase(std::string_view a, std::string_view b) {
    return std::equal(
        a.begin(), a.end(), b.begin(), b.end(),
        [](char x, char y) { return lowerAscii(x) == lowerAscii(y); });
}

} // namespace MVR::Platform
