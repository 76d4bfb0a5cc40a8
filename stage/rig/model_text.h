#pragma once

#include <string>

namespace Stage {

/// The text of a model or a profile's file, whatever its packing: compressed or plain, and with
/// packed elements put in place as trees. False, with what is wrong and where in `error`, such as
/// "line 3, column 7: ...", if it is no such file or damaged.
[[nodiscard]] bool toModelText(const std::string& bytes, std::string& out, std::string& error);

} // namespace Stage
