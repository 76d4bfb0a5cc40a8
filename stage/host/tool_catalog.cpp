#include "stage/host/tool_catalog.h"

#include "platform/sdk/files.h"
#include "plugins/contract/c_camera_plugin.h"
#include "plugins/contract/extension_ids.h"
#include "stage/base/machine.h"

#include <cstdint>

namespace Stage {

namespace {

void listLibrary(const std::string& path, ToolCatalog& catalog) {
    SharedLibrary library;
    std::string error;
    if (!library.load(path, error)) {
        catalog.faults.push_back(path + " can't be loaded: " + error);
        return;
    }
    const auto getVersion = library.find<MVR::GetPluginVersion>("getVersion");
    const auto getPlugin = library.find<MVR::GetPlugin>("getPlugin");
    if (getVersion == nullptr || getPlugin == nullptr) {
        catalog.faults.push_back(path +
                                 " isn't a library of tools: it lacks getVersion or getPlugin");
        return;
    }
    if (const std::int32_t version = getVersion(); version != MVR::kPluginInterfaceVersion) {
        catalog.faults.push_back(path + " has version " + std::to_string(version) +
                                 " of the tool contract, not " +
                                 std::to_string(MVR::kPluginInterfaceVersion));
        return;
    }
    for (std::int32_t i = 0; i < MVR::kMostPlugins; ++i) {
        MVR::CCameraPlugin* tool = getPlugin(i);
        if (tool == nullptr)
            return;
        if (!tool->supportsExtension(MVR::DescriptorExtension::kInternal)) {
            catalog.tools.push_back({tool->getName(), tool->getVersionText(),
                                     tool->getDescription(), tool->getCategory(), tool->getAuthor(),
                                     path});
        }
        tool->destroy();
    }
}

} // namespace

ToolCatalog listTools(const std::string& folder) {
    ToolCatalog catalog;
    for (const auto& file :
         MVR::Platform::listFiles(folder + "/" + MVR::Platform::libraryPattern()))
        if (file.isRegular)
            listLibrary(folder + "/" + file.name, catalog);
    return catalog;
}

} // namespace Stage
