#include "dialogs/core_dialogs.h"

#include "core/base/border.h"
#include "core/base/folders.h"
#include "core/contract/core_interface.h"
#include "core/contract/setting_ids.h"
#include "core/services/core_services.h"
#include "dialogs/main_dialog.h"
#include "dialogs/tool_menu.h"

namespace MVR {

namespace {

Platform::FileChooser modelChooser(const char* text, const char* extension) {
    const std::string documents = resolveDocumentsPath();
    return {{{text, "*.prm"}, {"All files (*.*)", "*.*"}},
            extension,
            documents.empty() ? documents : documents + "\\PRM"};
}

} // namespace

std::int32_t CoreDialogs::ask(const std::string& text, const std::string& title,
                              std::uint32_t flags) {
    const Border::OpenCall dialog; // the host's events go on meanwhile
    bool silent = true;
    services_.getInterface().getProperty(Setting::kSilentMode, &silent);
    return silent ? Platform::defaultAnswer(flags) : Platform::messageBox(0, text, title, flags);
}

std::string CoreDialogs::askModelToOpen() {
    const Border::OpenCall dialog;
    return Platform::chooseFileToOpen(services_.getParentWindow(),
                                      modelChooser("Oskel Pre-Rigged Models (*.prm)", ""));
}

std::string CoreDialogs::askModelToSave() {
    const Border::OpenCall dialog;
    return Platform::chooseFileToSave(services_.getParentWindow(),
                                      modelChooser("Oskel Pre-Rigged Model (*.prm)", "prm"));
}

void CoreDialogs::openMenu(InstanceReference& tool) {
    const Border::OpenCall dialog;
    ToolMenu menu(tool);
    menu.run(Platform::chooseFromMenu(getWindow(), menu.getItems()));
}

Platform::WindowHandle CoreDialogs::getWindow() const {
    return mainDialog_.getWindow();
}

} // namespace MVR
