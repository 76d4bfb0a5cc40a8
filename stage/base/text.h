#pragma once

#include <string>
#include <string_view>

namespace Stage {

/// Returns the text as UTF-8: each byte that isn't part of a character becomes "?".
std::string toUtf8(std::string_view text);

/// Returns the shortest text that reads back as the same number.
std::string toText(double value);

/// Reads all of `text` as a number, in the C locale. Returns false if it holds anything else or the
/// number isn't finite.
[[nodiscard]] bool toNumber(std::string_view text, double& out);
[[nodiscard]] bool toNumber(std::string_view text, int& out);

/// Returns the text as a field of a table: in quotes, on one line.
std::string quoted(const std::string& text);

/// Returns the text without blanks around it.
std::string_view trimmed(std::string_view text);

} // namespace Stage
