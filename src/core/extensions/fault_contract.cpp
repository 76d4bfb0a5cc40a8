#include "core/extensions/fault_contract.h"

#include "core/base/sdk/log.h"
#include "core/services/core_services.h"
#include "core/services/fault_list.h"

namespace MVR {

std::vector<CoreFault> FaultContract::list() {
    return services_.getFaults().getFaults();
}

bool FaultContract::tell(std::string text) {
    if (FaultList* const list = FaultList::underWay()) {
        list->tell(text);
        return true;
    }
    Log(Log::Warning).write(text);
    return false;
}

} // namespace MVR
