#pragma once

#include "plugins/contract/c_interface.h"
#include "plugins/contract/extension_ids.h"

#include <cstdint>
#include <string>

namespace MVR {

/// The name and type of a tool; data of extension 57.
struct ToolIdentity {
    std::string name; ///< as it is now, unique among the tools
    std::string type; ///< the kind of tool
};

/// Returns the identity of a tool, for an adaptor in any call that names a tool by its CInterface,
/// also while the tool is made. Both parts are "" if the core is older than this header.
inline ToolIdentity getToolIdentity(CInterface& tool) {
    ToolIdentity identity;
    tool.extend(InterfaceExtension::kIdentity, reinterpret_cast<std::intptr_t>(&identity));
    return identity;
}

} // namespace MVR
