#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace Stage {

/// Returns what a message about an unknown `word` ends with: "; did you mean NAME?" with the one of
/// `names` that the word was probably meant to be, or "" if none is near. Capitals don't count.
std::string askForNearest(std::string_view word, const std::vector<std::string>& names);

} // namespace Stage
