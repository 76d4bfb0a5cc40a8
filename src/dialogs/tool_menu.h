// The context menu of a tool in the tree.
#pragma once

#include "platform/choosers.h"
#include "plugins/instance_reference.h"

#include <cstdint>
#include <vector>

namespace MVR {

/// What the user can do with one tool.
class ToolMenu {
public:
    static constexpr std::int32_t kConfigure = 40326;
    static constexpr std::int32_t kDelete = 40327;
    static constexpr std::int32_t kSave = 40330;
    static constexpr std::int32_t kInputSettings = 40331;
    static constexpr std::int32_t kBrowse = 40332;
    static constexpr std::int32_t kDocumentation = 40338;
    static constexpr std::int32_t kNewTool = 300000; ///< plus the index in the sorted list of tools
    static constexpr std::int32_t kRecent = 400000;  ///< plus the index in the recent list

    /// The menu of a tool or the root; not of a holder.
    explicit ToolMenu(InstanceReference& reference) : reference_(&reference) {}

    [[nodiscard]] std::vector<Platform::MenuItem> getItems() const;
    /// Does what the item of that command does; does nothing for an unknown one, or once the tool
    /// is gone. This may destroy the tool.
    void run(std::int32_t command);

private:
    InstanceReference::Watch reference_; // the host may destroy the tool while the menu is open
};

} // namespace MVR
