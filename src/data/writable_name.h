// Names that are stored in files.
#pragma once

#include <string>

namespace MVR {

/// Returns true if there is nothing but space in `name`.
[[nodiscard]] bool isBlank(const std::string& name);

/// Returns `name` with "_" for each byte that the value of an attribute doesn't bring back, or
/// that other readers refuse: ">", and the control characters other than tab and line ends.
[[nodiscard]] std::string writableName(std::string name);

/// The same for a name that is given now: a line in the log tells of what was changed.
[[nodiscard]] std::string adoptName(const std::string& name);

} // namespace MVR
