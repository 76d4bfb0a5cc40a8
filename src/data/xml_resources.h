#pragma once

#include "data/sdk/tag.h"

#include <cstdint>
#include <string>

namespace MVR {

/// The layout of a dialog or panel by its number, parsed anew at each call. An empty Tag if there
/// is no such layout.
Tag loadXmlResource(std::uint16_t number);

/// Expands the macros in a path that is about to be opened, such as "[DATAPATH]" for the user's
/// data folder. A folder that can't be found counts as empty, which leaves "\data" of the user's;
/// the log tells of it.
std::string expandPathMacros(const std::string& path);

} // namespace MVR
