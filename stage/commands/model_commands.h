#pragma once

#include "stage/base/options.h"

#include <string>
#include <vector>

/// The commands below "model". Each takes the words behind its name.
namespace Stage {

ExitCode modelSaveCommand(const std::vector<std::string>& words);
ExitCode modelLoadCommand(const std::vector<std::string>& words);
ExitCode modelListCommand(const std::vector<std::string>& words);
ExitCode modelShowCommand(const std::vector<std::string>& words);

} // namespace Stage
