// Models, by commands of its own.
#pragma once

#include "stage/base/options.h"

#include <string>
#include <vector>

namespace Stage {

ExitCode modelCommand(const std::vector<std::string>& words);

} // namespace Stage
