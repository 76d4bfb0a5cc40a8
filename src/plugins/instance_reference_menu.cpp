#include "plugins/instance_reference.h"

#include "core/base/folders.h"
#include "core/core_implementation.h"
#include "instance/plugin_instance.h"
#include "platform/choosers.h"
#include "plugins/contract/extension_ids.h"
#include "plugins/instance_menu.h"
#include "plugins/libraries/library.h"
#include "plugins/libraries/library_manager.h"
#include "plugins/libraries/plugin.h"
#include "plugins/model/model_file.h"

#include <algorithm>

namespace MVR {
namespace {

Platform::FileChooser modelChooser(const char* text, const char* extension) {
    const std::string documents = resolveDocumentsPath();
    return {{{text, "*.prm"}, {"All files (*.*)", "*.*"}},
            extension,
            documents.empty() ? documents : documents + "\\PRM"};
}

MenuItem item(std::int32_t command, const std::string& text, bool isGreyed = false) {
    return {command, text, isGreyed, {}};
}

/// The names of the tools that a user may create, in ascending order of their bytes.
std::vector<std::string> toolNames() {
    std::vector<std::string> names;
    const LibraryManager& libraries = *LibraryManager::instance();
    for (std::int32_t i = 0; i < libraries.getLibraryCount(); ++i) {
        const Library& library = *libraries.getLibrary(i);
        for (std::int32_t j = 0; j < library.getPluginCount(); ++j)
            if (Plugin* const plugin = library.getPlugin(j);
                !plugin->getDescriptor()->supportsExtension(DescriptorExtension::kInternal))
                names.push_back(plugin->getName());
    }
    std::sort(names.begin(), names.end());
    return names;
}

} // namespace

bool InstanceReference::saveModelFile(const std::string& path) {
    Tag model;
    (void)save(model, SaveMask::kModel);
    return writeModelFile(path, model);
}

void InstanceReference::savePrm() {
    CoreImplementation* const core = getCore();
    if (core == nullptr)
        return;
    const std::string path = Platform::chooseFileToSave(
        core->getParentWindow(), modelChooser("Oskel Pre-Rigged Model (*.prm)", "prm"));
    if (path.empty())
        return;
    if (saveModelFile(path))
        core->messageBox(0, "PRM saved successfully", "Mirvane", Platform::kButtonsOk);
    else
        core->messageBox(0, "Error: Unable to save to the specified file.", "Mirvane",
                         Platform::kButtonsOk | Platform::kIconError);
}

std::vector<MenuItem> InstanceReference::getMenu() const {
    using namespace InstanceMenu;
    std::vector<MenuItem> tools;
    for (const std::string& name : toolNames())
        tools.push_back(item(kNewTool + static_cast<std::int32_t>(tools.size()), name));
    std::vector<MenuItem> recent;
    if (const CoreImplementation* const core = getCore())
        for (std::int32_t index = core->getRecentCount() - 1; index >= 0; --index)
            recent.push_back(item(kRecent + index, core->getRecentLabel(index)));
    const bool hasPanel = instance_ != nullptr && instance_->hasPanel();
    const bool hasInputs = instance_ != nullptr && instance_->getProperties().count() > 0;
    return {item(kConfigure, "Configure", !hasPanel),
            item(kInputSettings, "Input Settings", !hasInputs),
            item(kDocumentation, "Help documentation"),
            item(kSave, "Save"),
            item(kDelete, "Delete"),
            MenuItem(),
            item(kBrowse, "Browse..."),
            {0, "New tool", false, tools},
            {0, "Recent", false, recent}};
}

void InstanceReference::runMenuCommand(std::int32_t command) {
    CoreImplementation* const core = getCore();
    if (core == nullptr)
        return;
    switch (command) {
    case InstanceMenu::kConfigure:
        return instance_->openConfiguration();
    case InstanceMenu::kInputSettings:
        return (void)instance_->openInputDialog();
    case InstanceMenu::kDocumentation: // shown, but tells nothing
        return;
    case InstanceMenu::kSave:
        return savePrm();
    case InstanceMenu::kDelete:
        if (getParentReference() != nullptr)
            remove(true);
        return;
    case InstanceMenu::kBrowse:
        return browse();
    }
    if (command >= InstanceMenu::kRecent) {
        const Tag recent = core->getRecentEntry(command - InstanceMenu::kRecent);
        if (!recent.isEmpty())
            core->create(recent, nullptr, true);
    } else if (command >= InstanceMenu::kNewTool) {
        const std::vector<std::string> names = toolNames();
        const auto index = static_cast<std::size_t>(command - InstanceMenu::kNewTool);
        if (index < names.size())
            if (Plugin* const plugin = LibraryManager::instance()->findPlugin(names[index]))
                core->create(plugin->getDefaultData(""), this, true);
    }
}

/// Creates the tools of a file that the user chooses below this one.
void InstanceReference::browse() {
    CoreImplementation* const core = getCore();
    const std::string path = Platform::chooseFileToOpen(
        core->getParentWindow(), modelChooser("Oskel Pre-Rigged Models (*.prm)", ""));
    if (!path.empty())
        (void)core->createFromFile(path, this); // the log tells what went wrong
}

} // namespace MVR
