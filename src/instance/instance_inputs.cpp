#include "instance/instance_inputs.h"

#include "core/base/border.h"
#include "data/writable_name.h"
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
        properties_.getOrCreate(name, acceptedKinds, InputProperty::Maker());
    const Tag kept = unknownProperties_.release([property](const Tag& entry) {
        return entry.hasName(kProperty) && writableName(entry.attribute(kName)) == property->name;
    });
    if (!kept.isEmpty())
        (void)applyProperty(own(*property), kept);
    return property;
}

void InstanceInputs::addForSpinner(std::int32_t componentId, const std::string& label) {
    constexpr std::int32_t kKinds = UniDevice::trinary | UniDevice::finite | UniDevice::infinite;
    spinnerProperties_.emplace_back(componentId, add("Spinner: " + label, kKinds));
}

Tag InstanceInputs::describe(const std::string& profileName, bool isExact) const {
    Tag profile = Tag::element(kProfileElement);
    profile.attributeRef(kName) = profileName;
    for (std::int32_t i = 0; i < properties_.count(); ++i)
        profile.addChild(describeProperty(at(i), isExact));
    unknownProperties_.writeTo(profile);
    return profile;
}

Tag InstanceInputs::describeProperty(InputProperty& property, bool isExact) {
    Tag entry;
    property.toTag(entry, isExact);
    Tag control; // stays empty if a stand-in of a resimulation replaces no control
    if (property.control != nullptr)
        (void)Border::call([&property] { return "The input of " + property.name; }, "toTag",
                           [&] { property.control->toTag(control); });
    entry.addChild(control.isEmpty() ? property.getKeptControl().getLost() : std::move(control));
    property.getKeptElements().writeTo(entry);
    return entry;
}

std::int32_t InstanceInputs::apply(const Tag& profile) {
    if (profile.isEmpty() || !profile.hasName(kProfileElement))
        return kNoProfile;
    for (std::int32_t i = 0; i < properties_.count(); ++i) {
        at(i).bind(nullptr);
        at(i).getKeptElements().clear();
    }
    unknownProperties_.clear();
    std::int32_t missing = 0;
    unknownProperties_.keepUnknown(profile, [this, &missing](const Tag& entry) {
        UniDevice::Property* const property =
            entry.hasName(kProperty) ? properties_.property(entry.attribute(kName)) : nullptr;
        if (property != nullptr && !applyProperty(own(*property), entry))
            ++missing;
        return property != nullptr;
    });
    return missing;
}

/// Returns false if the control that `entry` names isn't there: the property stays unbound.
bool InstanceInputs::applyProperty(InputProperty& property, const Tag& entry) {
    property.readSettings(entry);
    KeptElements& others = property.getKeptElements();
    others.clear(); // of several elements for one property the last counts
    others.keepUnknown(entry,
                       [](const Tag& each) { return each.hasName(kControl) || isParameter(each); });
    const Tag& wanted = entry.child(kControl);
    if (wanted.isEmpty()) {
        property.getKeptControl().boundAnew(property.control);
        return true;
    }
    UniDevice::Control* const control = UniDevice::DeviceHandler::instance()->findControl(wanted);
    property.bind(control);
    property.getKeptControl().keep(control, wanted);
    return control != nullptr;
}

} // namespace MVR
