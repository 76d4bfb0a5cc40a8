#pragma once

#include "plugins/libraries/built_in_plugin.h"

namespace MVR {

/// The kind of the tree's root: a container for all tools.
class RootPlugin final : public BuiltInPlugin {
public:
    class Code;

    /// The type name, which distinguishes the root from all other tools.
    static constexpr const char* kName = "Root";

    RootPlugin();
    CCamera* create(CCamera::CreateParam* param) override;
};

} // namespace MVR
