#include "plugins/core_library.h"

#include "core/log.h"
#include "plugins/empty_plugin.h"
#include "plugins/plugin.h"
#include "plugins/root_plugin.h"

namespace MVR {

CoreLibrary::CoreLibrary() : Library(nullptr, "Core") {
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
