#pragma once

#include <string>
#include <string_view>

namespace Stage {

/// The text as UTF-8: each byte that is part of no character becomes "?".
std::string toUtf8(std::string_view text);

/// The shortest text that reads back as the same number.
std::string toText(double value);

/// Reads the whole of `text` as a number, in the C locale; false if it holds anything else or isn't
/// finite.
[[nodiscard]] bool toNumber(std::string_view text, double& out);
[[nodiscard]] bool toNumber(std::string_view text, int& out);

/// The text as a field of a table: in quotes, on one line.
std::string quoted(const std::string& text);

/// The text without blanks around it.
std::string_view trimmed(std::string_view text);

} // namespace Stage
