#include "instance/plugin_instance.h"

namespace MVR {

PluginInstance::COREComboUpdater::COREComboUpdater(std::int32_t id)
    : MessageNode("COREComboUpdater"), id_(id) {}

void PluginInstance::COREComboUpdater::update(std::vector<std::string> choices) {
    if (component_ == nullptr)
        return;
    Util::Message clear(kClearChoices);
    (void)send(component_, clear);
    for (const std::string& choice : choices) {
        Util::Message add(kAddChoice, static_cast<std::uint32_t>(-1),
                          reinterpret_cast<std::intptr_t>(&choice));
        (void)send(component_, add);
    }
}

void PluginInstance::beginPanel() {
    panelLayout_.begin();
}

// The dialog around a panel is built from the frame that all tools share. There is no such frame,
// so no dialog comes into being, and the description ends here; the tool isn't told.
void PluginInstance::endPanel() {
    panelLayout_.end();
}

void PluginInstance::beginGroup(std::string label, std::string tooltip) {
    panelLayout_.beginGroup(label, tooltip);
}

void PluginInstance::endGroup() {
    panelLayout_.endGroup();
}

void PluginInstance::addSpinnerInt(std::string label, std::string tooltip, std::int32_t* variable,
                                   std::int32_t minimum, std::int32_t maximum, std::int32_t step,
                                   std::int32_t triggerLength, bool input, std::intptr_t,
                                   Callback* callback) {
    addSpinnerProperty(panelLayout_.addSpinnerInt(label, tooltip, variable, minimum, maximum, step,
                                                  triggerLength, callback),
                       label, input);
}

void PluginInstance::addSpinner(std::string label, std::string tooltip, double* variable,
                                double minimum, double maximum, double step,
                                std::int32_t triggerLength, bool input, std::intptr_t,
                                Callback* callback) {
    addSpinnerProperty(panelLayout_.addSpinner(label, tooltip, variable, minimum, maximum, step,
                                               triggerLength, callback),
                       label, input);
}

/// The input property by which a take moves a spinner's value.
void PluginInstance::addSpinnerProperty(std::int32_t id, const std::string& label, bool input) {
    constexpr std::int32_t kKinds = UniDevice::trinary | UniDevice::finite | UniDevice::infinite;
    if (input && id != PanelLayout::kNoId)
        spinnerProperties_[id] = addProperty("Spinner: " + label, kKinds, nullptr);
}

void PluginInstance::addCheck(std::string label, std::string tooltip, bool* variable,
                              Callback* callback) {
    panelLayout_.addCheck(label, tooltip, variable, callback);
}

void PluginInstance::addText(std::string label, std::string tooltip, std::string* variable,
                             Callback* callback) {
    panelLayout_.addText(label, tooltip, variable, callback);
}

CInterface::ComboUpdater* PluginInstance::addCombo(std::string label, std::string tooltip,
                                                   std::vector<std::string> choices,
                                                   std::string* variable, Callback* callback) {
    const std::int32_t id = panelLayout_.addCombo(label, tooltip, choices, variable, callback);
    if (id == PanelLayout::kNoId)
        return nullptr;
    comboUpdaters_.emplace_back(new COREComboUpdater(id));
    return comboUpdaters_.back().get();
}

void PluginInstance::addButton(std::string label, std::string tooltip, Callback* callback) {
    panelLayout_.addButton(label, tooltip, callback);
}

void PluginInstance::openConfiguration() {} // there is no dialog

void PluginInstance::updatePanel() {} // nothing shows the tool's variables

std::intptr_t PluginInstance::openInputDialog() {
    return 0;
}

} // namespace MVR
