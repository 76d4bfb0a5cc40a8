#include "dialogs/tool_menu.h"

#include "core/services/core_services.h"
#include "core/services/user_dialogs.h"
#include "instance/plugin_instance.h"
#include "plugins/instance_manager.h"
#include "plugins/libraries/library.h"
#include "plugins/libraries/library_manager.h"
#include "plugins/libraries/plugin.h"

#include <algorithm>
#include <cstddef>
#include <string>

namespace MVR {
namespace {

Platform::MenuItem item(std::int32_t command, const std::string& text, bool isGreyed = false) {
    return {command, text, isGreyed, {}};
}

/// The names of the tools that a user may create, in ascending order of their bytes.
std::vector<std::string> toolNames() {
    std::vector<std::string> names;
    const LibraryManager& libraries = *LibraryManager::instance();
    for (std::int32_t i = 0; i < libraries.getLibraryCount(); ++i) {
        const Library& library = *libraries.getLibrary(i);
        for (std::int32_t j = 0; j < library.getPluginCount(); ++j)
            if (Plugin* const plugin = library.getPlugin(j); !plugin->isInternal())
                names.push_back(plugin->getName());
    }
    std::sort(names.begin(), names.end());
    return names;
}

/// Creates the tools of a file that the user chooses below `tool`.
void browse(InstanceReference& tool) {
    const InstanceReference::Watch parent(&tool);
    CoreServices& services = *tool.getServices();
    const std::string path = services.getDialogs().askModelToOpen();
    if (!path.empty() && parent.get() != nullptr)
        (void)services.getTree().createFromFile(path, &tool); // the log says what went wrong
}

} // namespace

std::vector<Platform::MenuItem> ToolMenu::getItems() const {
    const InstanceReference& reference = *reference_.get();
    std::vector<Platform::MenuItem> tools;
    for (const std::string& name : toolNames())
        tools.push_back(item(kNewTool + static_cast<std::int32_t>(tools.size()), name));
    std::vector<Platform::MenuItem> recent;
    const InstanceManager& tree = reference.getServices()->getTree();
    for (std::int32_t index = tree.getRecentCount() - 1; index >= 0; --index)
        recent.push_back(item(kRecent + index, tree.getRecentLabel(index)));
    const PluginInstance& instance = *reference.getInstance();
    return {item(kConfigure, "Configure", !instance.hasPanel()),
            item(kInputSettings, "Input Settings", instance.getProperties().count() == 0),
            item(kDocumentation, "Help documentation"),
            item(kSave, "Save"),
            item(kDelete, "Delete"),
            Platform::MenuItem(),
            item(kBrowse, "Browse..."),
            {0, "New tool", false, tools},
            {0, "Recent", false, recent}};
}

void ToolMenu::run(std::int32_t command) {
    InstanceReference* const reference = reference_.get();
    if (reference == nullptr)
        return;
    InstanceManager& tree = reference->getServices()->getTree();
    switch (command) {
    case kConfigure:
        return reference->getInstance()->openConfiguration();
    case kInputSettings:
        return (void)reference->getInstance()->openInputDialog();
    case kDocumentation: // shown, but does nothing
        return;
    case kSave:
        return reference->savePrm();
    case kDelete:
        if (reference->getParentReference() != nullptr)
            reference->remove(true);
        return;
    case kBrowse:
        return browse(*reference);
    }
    if (command >= kRecent) {
        const Tag recent = tree.getRecentEntry(command - kRecent);
        if (!recent.isEmpty())
            tree.create(recent, nullptr, true);
    } else if (command >= kNewTool) {
        const std::vector<std::string> names = toolNames();
        const auto index = static_cast<std::size_t>(command - kNewTool);
        if (index < names.size())
            if (Plugin* const plugin = LibraryManager::instance()->findPlugin(names[index]))
                tree.create(plugin->getDefaultData(""), reference, true);
    }
}

} // namespace MVR
