#include "instance/instance_inputs.h"

#include "unidevice/sdk/binding_words.h"
#include "unidevice/sdk/control.h"
#include "unidevice/sdk/device_handler.h"
#include "unidevice/sdk/profile_managers.h"

#include <utility>

namespace MVR {

namespace {

using UniDevice::BindingWord::kControl;
using UniDevice::BindingWord::kName;
using UniDevice::BindingWord::kProperty;

bool isParameter(const Tag& element) {
    static const Tag all = [] {
        Tag tag;
        UniDevice::Property("", 0).toTag(tag);
        return tag;
    }();
    return all.childCount(element.name()) > 0;
}

} // namespace

UniDevice::Property* InstanceInputs::add(const std::string& name, std::int32_t acceptedKinds) {
    UniDevice::Property* const property =
        properties_.getOrCreate(name, acceptedKinds, HeldProperty::Maker());
    const Tag kept = unknownProperties_.release([&name](const Tag& entry) {
        return entry.hasName(kProperty) && entry.attribute(kName) == name;
    });
    if (!kept.isEmpty())
        (void)applyProperty(*property, kept);
    return property;
}

void InstanceInputs::addForSpinner(std::int32_t componentId, const std::string& label) {
    constexpr std::int32_t kKinds = UniDevice::trinary | UniDevice::finite | UniDevice::infinite;
    spinnerProperties_.emplace_back(componentId, add("Spinner: " + label, kKinds));
}

Tag InstanceInputs::describe(const std::string& profileName, bool isExact) {
    Tag profile = Tag::element(kProfileElement);
    profile.attributeRef(kName) = profileName;
    for (std::int32_t i = 0; i < properties_.count(); ++i)
        profile.addChild(describeProperty(*properties_.property(i), isExact));
    unknownProperties_.writeTo(profile);
    return profile;
}

Tag InstanceInputs::describeProperty(const UniDevice::Property& property, bool isExact) {
    Tag entry;
    property.toTag(entry, isExact);
    Tag control; // stays empty if a stand-in of a resimulation replaces no control
    if (property.control != nullptr)
        property.control->toTag(control);
    if (control.isEmpty())
        control = findLost(property);
    else
        noteControl(property, control);
    entry.addChild(std::move(control));
    if (const auto kept = kept_.find(property.name); kept != kept_.end())
        kept->second.others.writeTo(entry);
    return entry;
}

/// Returns the element of the control that `property`, which has none now, is to have again.
Tag InstanceInputs::findLost(const UniDevice::Property& property) {
    const auto found = kept_.find(property.name);
    if (found == kept_.end())
        return {};
    KeptControl& kept = found->second.control;
    if (kept.getControl() == nullptr)
        return kept.getElement();
    if (property.control == nullptr) // cleared, for the control is still there
        kept.clear();
    return {};
}

/// The control of `property`, whose element is `element`, may go before the next profile. What
/// stands in for another has no device, and nothing is to come back to it.
void InstanceInputs::noteControl(const UniDevice::Property& property, const Tag& element) {
    if (property.control->device == nullptr)
        return;
    KeptControl& kept = kept_[property.name].control;
    if (kept.getControl() != property.control)
        kept.keep(property.control, element);
}

void InstanceInputs::bind(UniDevice::Property& property, UniDevice::Control* control) {
    if (const auto kept = kept_.find(property.name); kept != kept_.end())
        kept->second.control.clear();
    property.bind(control);
}

std::int32_t InstanceInputs::apply(const Tag& profile) {
    if (profile.isEmpty() || !profile.hasName(kProfileElement))
        return kNoProfile;
    for (std::int32_t i = 0; i < properties_.count(); ++i)
        bind(*properties_.property(i), nullptr);
    kept_.clear();
    unknownProperties_.clear();
    std::int32_t missing = 0;
    unknownProperties_.keepUnknown(profile, [this, &missing](const Tag& entry) {
        UniDevice::Property* const property =
            entry.hasName(kProperty) ? properties_.property(entry.attribute(kName)) : nullptr;
        if (property != nullptr && !applyProperty(*property, entry))
            ++missing;
        return property != nullptr;
    });
    return missing;
}

/// Returns false if the control that `entry` names isn't there: the property stays unbound.
bool InstanceInputs::applyProperty(UniDevice::Property& property, const Tag& entry) {
    property.readSettings(entry);
    kept_.erase(property.name); // of several elements for one property the last counts
    KeptElements others;
    others.keepUnknown(entry,
                       [](const Tag& each) { return each.hasName(kControl) || isParameter(each); });
    if (!others.isEmpty())
        kept_[property.name].others = std::move(others);
    const Tag& wanted = entry.child(kControl);
    if (wanted.isEmpty())
        return true;
    UniDevice::Control* const control = UniDevice::DeviceHandler::instance()->findControl(wanted);
    bind(property, control);
    kept_[property.name].control.keep(control, wanted);
    return control != nullptr;
}

} // namespace MVR
