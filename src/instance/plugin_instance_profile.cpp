#include "instance/plugin_instance.h"

#include "plugins/contract/extension_ids.h"
#include "plugins/libraries/plugin.h"
#include "unidevice/sdk/device_handler.h"

namespace MVR {

namespace {

/// The tool's own list if it has one, else the one that it shares with its kind.
template <class List>
List& listOf(CCamera* tool, std::int32_t extension, List& shared) {
    if (tool == nullptr || !tool->supportsExtension(extension))
        return shared;
    List* const own = reinterpret_cast<List*>(tool->extend(extension, 0));
    return own != nullptr ? *own : shared;
}

} // namespace

ConfigProfileManager& PluginInstance::getConfigProfiles() const {
    return listOf(code_.get(), ToolExtension::kConfigProfiles, plugin_->getConfigProfiles());
}

InputProfileManager& PluginInstance::getInputProfiles() const {
    return listOf(code_.get(), ToolExtension::kInputProfiles, plugin_->getInputProfiles());
}

Tag PluginInstance::getConfigProfile(const std::string& profileName) const {
    Tag profile = Tag::element("profile");
    profile.attributeRef("name") = profileName;
    return profile;
}

void PluginInstance::applyConfigProfile(const Tag&) {} // the values are those of a dialog

Tag PluginInstance::getInputProfile(const std::string& profileName, bool isExact) const {
    Tag profile = Tag::element("profile");
    profile.attributeRef("name") = profileName;
    for (std::int32_t i = 0; i < properties_.count(); ++i) {
        const UniDevice::Property& property = *properties_.property(i);
        Tag entry;
        property.toTag(entry, isExact);
        if (property.control != nullptr) {
            Tag control;
            property.control->toTag(control);
            entry.addChild(std::move(control));
        }
        profile.addChild(std::move(entry));
    }
    return profile;
}

std::int32_t PluginInstance::applyInputProfile(const Tag& profile) {
    if (profile.isEmpty() || !profile.hasName("profile"))
        return kNoProfile;
    for (std::int32_t i = 0; i < properties_.count(); ++i)
        properties_.property(i)->bind(nullptr);
    std::int32_t missing = 0;
    for (std::int32_t i = 0; i < profile.childCount(); ++i) {
        const Tag& entry = profile.child(i);
        if (!entry.hasName("property"))
            continue;
        UniDevice::Property* const property = properties_.property(entry.attribute("name"));
        if (property == nullptr)
            continue;
        property->readSettings(entry);
        const Tag& wanted = entry.child("control");
        if (wanted.isEmpty())
            continue;
        UniDevice::Control* const control =
            UniDevice::DeviceHandler::instance()->findControl(wanted);
        property->bind(control);
        if (control == nullptr)
            ++missing;
    }
    Util::Message applied(kInputProfileApplied);
    broadcast(applied);
    return missing;
}

} // namespace MVR
