// The update check among the core's subsystems.
#pragma once

#include "core/services/core_sub_system.h"
#include "data/sdk/tag.h"

namespace MVR {

/// Takes part in the order of construction and destruction; nothing is checked or fetched.
class UpdateManager : public CoreSubSystem {
public:
    using CoreSubSystem::CoreSubSystem;

private:
    Tag updates_;
};

} // namespace MVR
