// Places tools, binds live input to them, records a take and writes it.
#pragma once

#include "stage/base/options.h"

#include <string>
#include <vector>

namespace Stage {

ExitCode recordCommand(const std::vector<std::string>& words);

} // namespace Stage
