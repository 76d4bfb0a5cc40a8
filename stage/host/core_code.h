#pragma once

#include <cstdint>
#include <string>

namespace Stage {

/// What a code of the core means, for the user, such as "Already recording (ALREADYRECORDING)".
/// Allowed while a core is attached.
std::string describeCode(std::int32_t code);

} // namespace Stage
