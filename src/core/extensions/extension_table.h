// The interfaces that CoreInterface::extend() returns.
#pragma once

#include "core/extensions/fault_contract.h"
#include "core/extensions/input_contract.h"
#include "core/extensions/model_contract.h"
#include "core/extensions/take_contract.h"
#include "core/extensions/tool_contract.h"

#include <cstdint>

namespace MVR {

/// The interfaces behind the ids of CoreExtension, for one attachment.
class ExtensionTable {
public:
    explicit ExtensionTable(CoreServices& services)
        : models_(services), tools_(services), inputs_(services), faults_(services),
          takes_(services) {}

    /// Returns the address of the interface, or 0 for an unknown id or a version that isn't there.
    [[nodiscard]] std::intptr_t find(std::int32_t id, std::intptr_t version);

private:
    ModelContract models_;
    ToolContract tools_;
    InputContract inputs_;
    FaultContract faults_;
    TakeContract takes_;
};

} // namespace MVR
