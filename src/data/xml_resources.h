#pragma once

#include "data/sdk/tag.h"

#include <cstdint>
#include <string>

namespace MVR {

/// Returns the layout of a dialog or panel, parsed anew at each call, or an empty Tag if there is
/// none with this number.
Tag loadXmlResource(std::uint16_t number);

/// Expands the macros in a path that is about to be opened, such as "[DATAPATH]" for the user's
/// data folder. A folder that can't be found counts as empty, which leaves "\data" of the user's,
/// and is logged.
std::string expandPathMacros(const std::string& path);

} // namespace MVR
