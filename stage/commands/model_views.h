// What can be made, and what a model holds.
#pragma once

#include "stage/base/options.h"

#include <string>
#include <vector>

namespace Stage {

ExitCode modelListCommand(const std::vector<std::string>& words);
ExitCode modelShowCommand(const std::vector<std::string>& words);

} // namespace Stage
