// Runs the takes of a saved scene again.
#pragma once

#include "stage/base/options.h"

#include <string>
#include <vector>

namespace Stage {

ExitCode resimulateCommand(const std::vector<std::string>& words);

} // namespace Stage
