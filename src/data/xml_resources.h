#pragma once

#include "data/sdk/tag.h"

#include <cstdint>
#include <string>

namespace MVR {

/// The layout of a dialog or panel by its number, parsed anew at each call. An empty Tag if there
/// is no such layout.
Tag loadXmlResource(std::uint16_t number);

/// Expands "[DATAPATH]" (the user's data folder), then "[SHAREDDATAPATH]" (the data of the install)
/// in a path that is about to be opened. A folder that can't be found counts as empty, which
/// leaves "\data" of the user's; the log tells of it.
std::string expandPathMacros(const std::string& path);

} // namespace MVR
