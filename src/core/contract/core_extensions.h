// What the core offers beside its 24 operations: small interfaces behind CoreInterface::extend().
#pragma once

#include "core/contract/core_faults.h"
#include "core/contract/core_inputs.h"
#include "core/contract/core_interface.h"
#include "core/contract/core_models.h"
#include "core/contract/core_takes.h"
#include "core/contract/core_tools.h"

#include <cstdint>

namespace MVR {

/// Ids for CoreInterface::extend(). `data` is the version that the caller was built for, 1 or more;
/// the result is a pointer to the interface, or 0 if this core has none of that version. The
/// helpers below make the call.
///
/// The core owns the interfaces; each is the same object until `detach` returns. They may be asked
/// for and called whenever the core may, on the same thread. In detachNotify() the tools are gone:
/// lists are empty, and operations that would make or change a tool return the code of
/// "CORE_DETACHING".
namespace CoreExtension {
constexpr std::int32_t kModels = 60; ///< CoreModels
constexpr std::int32_t kTools = 61;  ///< CoreTools
constexpr std::int32_t kInputs = 62; ///< CoreInputs
constexpr std::int32_t kFaults = 63; ///< CoreFaults
constexpr std::int32_t kTakes = 64;  ///< CoreTakes
} // namespace CoreExtension

/// Returns the interface of type `Interface` behind `id`, or null if `core` is older than this
/// header.
template <class Interface>
Interface* findExtension(CoreInterface& core, std::int32_t id) {
    return reinterpret_cast<Interface*>(core.extend(id, Interface::kVersion));
}

inline CoreModels* getModels(CoreInterface& core) {
    return findExtension<CoreModels>(core, CoreExtension::kModels);
}

inline CoreTools* getTools(CoreInterface& core) {
    return findExtension<CoreTools>(core, CoreExtension::kTools);
}

inline CoreInputs* getInputs(CoreInterface& core) {
    return findExtension<CoreInputs>(core, CoreExtension::kInputs);
}

inline CoreFaults* getFaults(CoreInterface& core) {
    return findExtension<CoreFaults>(core, CoreExtension::kFaults);
}

inline CoreTakes* getTakes(CoreInterface& core) {
    return findExtension<CoreTakes>(core, CoreExtension::kTakes);
}

} // namespace MVR
