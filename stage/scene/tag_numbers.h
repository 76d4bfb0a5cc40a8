// Numbers as the text of an element.
#pragma once

#include "data/sdk/tag.h"

#include <span>
#include <string>
#include <string_view>

namespace Stage {

/// Returns an element that holds the numbers, with blanks between them.
MVR::Tag toTag(const char* word, std::span<const double> numbers);

/// Reads as many numbers as `out` has room for from the element `word` of `tag`. Returns false,
/// with the reason in `reason`, if it is missing or holds anything else.
[[nodiscard]] bool readNumbers(const MVR::Tag& tag, const char* word, std::span<double> out,
                               std::string& reason);

/// Removes the next number, which need not be finite, from the front of a text. Returns false if
/// there is none.
[[nodiscard]] bool takeNumber(std::string_view& text, double& out);

/// Returns a text from a file for a message: in quotes, and only the beginning of a long one.
std::string shown(std::string_view text);

} // namespace Stage
