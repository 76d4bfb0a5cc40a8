// Lists the tools that can be placed.
#pragma once

#include "stage/base/options.h"

#include <string>
#include <vector>

namespace Stage {

ExitCode toolsCommand(const std::vector<std::string>& words);

} // namespace Stage
