#include "core/extensions/model_contract.h"

#include "core/base/error_codes.h"
#include "core/extensions/tool_lookup.h"
#include "core/services/core_services.h"
#include "core/services/fault_list.h"
#include "plugins/instance_manager.h"
#include "plugins/instance_reference.h"

namespace MVR {

std::int32_t ModelContract::load(std::string path, std::string parent) {
    const FaultList::Operation operation(services_.getFaults());
    std::int32_t code = 0;
    InstanceReference* const below = findParent(services_, parent, code);
    return below != nullptr ? services_.getTree().createFromFile(path, below) : code;
}

std::int32_t ModelContract::save(std::string toolName, std::string path) {
    const FaultList::Operation operation(services_.getFaults());
    std::int32_t code = 0;
    InstanceReference* const tool = findParent(services_, toolName, code);
    if (tool == nullptr)
        return code;
    if (!tool->saveModelFile(path))
        return reportCode(Codes::kModelUnwritable);
    return 0;
}

Tag ModelContract::getCatalogue() {
    return services_.getTree().describeCatalogue();
}

} // namespace MVR
