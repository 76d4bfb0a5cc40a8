#include "core/extensions/extension_table.h"

#include "core/base/sdk/log.h"
#include "core/contract/core_extensions.h"

namespace MVR {
namespace {

template <class Interface>
std::intptr_t give(Interface& interface, std::intptr_t version) {
    // The caller treats it as exactly this base.
    return version >= 1 && version <= Interface::kVersion
               ? reinterpret_cast<std::intptr_t>(&interface)
               : 0;
}

} // namespace

std::intptr_t ExtensionTable::find(std::int32_t id, std::intptr_t version) {
    switch (id) {
    case CoreExtension::kModels:
        return give<CoreModels>(models_, version);
    case CoreExtension::kTools:
        return give<CoreTools>(tools_, version);
    case CoreExtension::kInputs:
        return give<CoreInputs>(inputs_, version);
    case CoreExtension::kFaults:
        return give<CoreFaults>(faults_, version);
    case CoreExtension::kTakes:
        return give<CoreTakes>(takes_, version);
    }
    Log(Log::Warning).write("Core: Caught unhandled extension", id, Log::OwnLevel);
    return 0;
}

} // namespace MVR
