#include "core/extensions/tool_lookup.h"

#include "core/base/error_codes.h"
#include "core/services/core_services.h"
#include "plugins/instance_manager.h"
#include "plugins/instance_reference.h"

namespace MVR {

InstanceReference* findTool(CoreServices& services, const std::string& name, std::int32_t& code) {
    InstanceReference* const root = findParent(services, "", code);
    if (root == nullptr)
        return nullptr;
    InstanceReference* const tool = root->findInstance(name, false, nullptr);
    if (tool != nullptr && tool != root)
        return tool;
    code = reportCode(Codes::kModelNoTool);
    return nullptr;
}

InstanceReference* findParent(CoreServices& services, const std::string& name, std::int32_t& code) {
    if (!name.empty())
        return findTool(services, name, code);
    InstanceReference* const root = services.getTree().getRoot();
    if (root == nullptr)
        code = reportCode(Codes::kDetaching);
    return root;
}

std::int32_t refuseDuringTake(CoreServices& services) {
    if (!services.isRecording())
        return 0;
    return reportCode(Codes::kAlreadyRecording);
}

} // namespace MVR
