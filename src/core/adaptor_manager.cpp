#include "core/adaptor_manager.h"

#include "core/base/folders.h"
#include "core/base/sdk/log.h"
#include "platform/sdk/files.h"

namespace MVR {

AdaptorManager::AdaptorManager(CoreImplementation* core, CoreServices* services,
                               AdaptorInterface* adaptor)
    : CoreSubSystem(core, services), adaptor_(adaptor) {
    Log log("Constructing Adaptor manager Core subsystem", Log::Notice);
    const std::string folder = getUserFolder();
    if (!folder.empty() && !Platform::createFolder(folder))
        log.write("Unable to create folder", folder, Log::Warning);
}

AdaptorManager::~AdaptorManager() {
    Log log("DeInitializing Adaptor manager Core subsystem", Log::Notice);
}

std::string AdaptorManager::getUserFolder() const {
    return resolveUserFolder(adaptor_->getName());
}

} // namespace MVR
