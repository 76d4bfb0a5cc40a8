// Shows what the input devices send.
#pragma once

#include "stage/base/options.h"

#include <string>
#include <vector>

namespace Stage {

ExitCode devicesCommand(const std::vector<std::string>& words);

} // namespace Stage
