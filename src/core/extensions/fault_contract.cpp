#include "core/extensions/fault_contract.h"

#include "core/services/core_services.h"
#include "core/services/fault_list.h"

namespace MVR {

std::vector<CoreFault> FaultContract::list() {
    return services_.getFaults().getFaults();
}

bool FaultContract::tell(std::string text) {
    return services_.getFaults().tell(text);
}

} // namespace MVR
