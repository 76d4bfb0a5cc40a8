#include "plugins/libraries/core_library.h"

#include "core/base/sdk/log.h"
#include "plugins/libraries/empty_plugin.h"
#include "plugins/libraries/plugin.h"
#include "plugins/libraries/root_plugin.h"

namespace MVR {

CoreLibrary::CoreLibrary() : Library("Core") {
    Log entry("Creating internal library", Log::Notice);
}

CoreLibrary::~CoreLibrary() {
    Log entry("Destroying internal library", Log::Notice);
}

void CoreLibrary::addBuiltInPlugins() {
    for (CCameraPlugin* descriptor : {static_cast<CCameraPlugin*>(new RootPlugin),
                                      static_cast<CCameraPlugin*>(new EmptyPlugin)}) {
        std::int32_t error = 0;
        Plugin::create(this, descriptor, error);
    }
}

} // namespace MVR
