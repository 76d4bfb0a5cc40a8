/// \file
/// The context menu of a tool in the tree.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

namespace MVR {

/// What a command does, InstanceReference::runMenuCommand() tells.
namespace InstanceMenu {
constexpr std::int32_t kConfigure = 40326;
constexpr std::int32_t kDelete = 40327;
constexpr std::int32_t kSave = 40330;
constexpr std::int32_t kInputSettings = 40331;
constexpr std::int32_t kBrowse = 40332;
constexpr std::int32_t kDocumentation = 40338;
constexpr std::int32_t kNewTool = 300000; ///< plus the place in the sorted list of tools
constexpr std::int32_t kRecent = 400000;  ///< plus the index in the recent list
} // namespace InstanceMenu

/// An item of a menu. One without text is a separator.
struct MenuItem {
    std::int32_t command = 0; ///< 0 for a submenu and a separator
    std::string text;
    bool isGreyed = false;
    std::vector<MenuItem> items; ///< of a submenu
};

} // namespace MVR
