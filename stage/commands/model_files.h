// Scenes to models, and models to scenes.
#pragma once

#include "stage/base/options.h"

#include <string>
#include <vector>

namespace Stage {

ExitCode modelSaveCommand(const std::vector<std::string>& words);
ExitCode modelLoadCommand(const std::vector<std::string>& words);

} // namespace Stage
