#include "instance/instance_panel.h"

#include "unidevice/sdk/profile_managers.h"

namespace MVR {

CInterface::ComboUpdater* InstancePanel::addCombo(const std::string& label,
                                                  const std::string& tooltip,
                                                  const std::vector<std::string>& choices,
                                                  std::string* variable,
                                                  CInterface::Callback* callback) {
    const std::int32_t id = layout_.addCombo(label, tooltip, choices, variable, callback);
    if (id == PanelLayout::kNoId)
        return nullptr;
    comboUpdaters_.emplace_back(new COREComboUpdater(id));
    return comboUpdaters_.back().get();
}

void InstancePanel::finish() {
    layout_.end();
}

void InstancePanel::clear() {
    while (!comboUpdaters_.empty())
        comboUpdaters_.pop_back();
}

Tag InstancePanel::describe(const std::string& profileName) const {
    Tag profile = Tag::element(kProfileElement);
    profile.attributeRef("name") = profileName;
    values_.writeTo(profile);
    return profile;
}

void InstancePanel::apply(const Tag& profile) {
    if (profile.isEmpty())
        return;
    values_.clear();
    values_.keepUnknown(profile, [](const Tag&) { return false; });
}

} // namespace MVR
