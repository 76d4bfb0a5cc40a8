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
        properties_.getOrCreate(name, acceptedKinds, UniDevice::Property::PlainFactory());
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
    const auto kept = kept_.find(property.name);
    if (kept == kept_.end()) {
        entry.addChild(std::move(control));
        return entry;
    }
    if (control.isEmpty())
        kept->second.control.writeTo(entry);
    else
        kept->second.control.clear(); // it was bound since
    entry.addChild(std::move(control));
    kept->second.others.writeTo(entry);
    return entry;
}

std::int32_t InstanceInputs::apply(const Tag& profile) {
    if (profile.isEmpty() || !profile.hasName(kProfileElement))
        return kNoProfile;
    for (std::int32_t i = 0; i < properties_.count(); ++i)
        properties_.property(i)->bind(nullptr);
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
    Kept kept;
    kept.others.keepUnknown(
        entry, [](const Tag& each) { return each.hasName(kControl) || isParameter(each); });
    const Tag& wanted = entry.child(kControl);
    if (!wanted.isEmpty()) {
        property.bind(UniDevice::DeviceHandler::instance()->findControl(wanted));
        if (property.control == nullptr)
            kept.control.keep(wanted);
    }
    const bool isMissing = !kept.control.isEmpty();
    if (isMissing || !kept.others.isEmpty())
        kept_[property.name] = std::move(kept);
    else
        kept_.erase(property.name); // the last of several elements for one property applies
    return !isMissing;
}

} // namespace MVR
