#include "plugins/instanciatable.h"

#include "plugins/plugin.h"

namespace MVR {

InstanceManager::Instanciatable::Instanciatable(Plugin* plugin)
    : data_(plugin->getDefaultData("")), name_(plugin->getName()),
      version_(plugin->getDescriptor()->getVersionText()),
      about_(plugin->getDescriptor()->getAbout()), categories_(plugin->getCategories()),
      plugin_(plugin) {}

} // namespace MVR
