#include "instance/instance_inputs.h"

#include "unidevice/sdk/control.h"
#include "unidevice/sdk/device_handler.h"

#include <utility>

namespace MVR {

namespace {

Tag describeProperty(const UniDevice::Property& property, bool isExact) {
    Tag entry;
    property.toTag(entry, isExact);
    if (property.control != nullptr) {
        Tag control;
        property.control->toTag(control);
        entry.addChild(std::move(control));
    }
    return entry;
}

/// False if the control that `entry` names isn't there: the property stays unbound.
bool applyProperty(UniDevice::Property& property, const Tag& entry) {
    property.readSettings(entry);
    const Tag& wanted = entry.child("control");
    if (wanted.isEmpty())
        return true;
    UniDevice::Control* const control = UniDevice::DeviceHandler::instance()->findControl(wanted);
    property.bind(control);
    return control != nullptr;
}

} // namespace

UniDevice::Property* InstanceInputs::add(const std::string& name, std::int32_t acceptedKinds) {
    return properties_.getOrCreate(name, acceptedKinds, UniDevice::Property::PlainFactory());
}

void InstanceInputs::addForSpinner(std::int32_t componentId, const std::string& label) {
    constexpr std::int32_t kKinds = UniDevice::trinary | UniDevice::finite | UniDevice::infinite;
    spinnerProperties_.emplace_back(componentId, add("Spinner: " + label, kKinds));
}

Tag InstanceInputs::describe(const std::string& profileName, bool isExact) const {
    Tag profile = Tag::element("profile");
    profile.attributeRef("name") = profileName;
    for (std::int32_t i = 0; i < properties_.count(); ++i)
        profile.addChild(describeProperty(*properties_.property(i), isExact));
    return profile;
}

std::int32_t InstanceInputs::apply(const Tag& profile) {
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
        if (property != nullptr && !applyProperty(*property, entry))
            ++missing;
    }
    return missing;
}

} // namespace MVR
