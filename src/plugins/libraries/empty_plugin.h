#pragma once

#include "plugins/libraries/built_in_plugin.h"

namespace MVR {

/// The kind of a folder in the tree: a tool that does nothing.
class EmptyPlugin final : public BuiltInPlugin {
public:
    class Code;

    EmptyPlugin();
    CCamera* create(CCamera::CreateParam* param) override;
};

} // namespace MVR
