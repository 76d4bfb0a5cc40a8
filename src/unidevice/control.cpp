#include "unidevice/sdk/control.h"

#include "data/sdk/tag.h"
#include "unidevice/attribute_fits.h"
#include "unidevice/sdk/binding_words.h"
#include "unidevice/sdk/control_target.h"
#include "unidevice/sdk/device.h"

#include <algorithm>
#include <cmath>

namespace UniDevice {

Control::Control(Device* owner, std::int32_t kinds, double leastChange)
    : kindMask(kinds), threshold(leastChange), device(owner) {}

Control::Control(const Control& other)
    : kindMask(other.kindMask), previousValue(other.previousValue), value(other.value),
      threshold(other.threshold), type(other.type), index(other.index),
      description(other.description), device(other.device) {}

Control::~Control() {
    // A target may remove itself, or another, during the call.
    while (!targets.empty()) {
        ControlTarget* target = targets.back();
        targets.pop_back();
        target->controlRemoved(this);
    }
}

void Control::toTag(MVR::Tag& out) const {
    if (device)
        device->toTag(out);
    else
        out = MVR::Tag::element(BindingWord::kControl);
    out.attributeRef(BindingWord::kType) = type;
    out.attributeRef(BindingWord::kIndex) = std::to_string(index);
    out.addChild(
        MVR::Tag::element("description", device ? device->name + ": " + description : description));
}

bool Control::matches(const MVR::Tag& tag) const {
    if ((device && !device->matches(tag)) || tag.attribute(BindingWord::kType) != type)
        return false;
    return attributeFits(tag, BindingWord::kIndex, index);
}

double Control::getValue() const {
    return value;
}

void Control::destroy() {
    delete this;
}

void Control::setValue(double newValue) {
    previousValue = value;
    value = newValue;
    ++arrivals;
}

void Control::resetValues() {
    previousValue = 0.0;
    value = 0.0;
}

double Control::change() const {
    return std::abs(value - previousValue);
}

void Control::removeTarget(const ControlTarget* target) {
    targets.erase(std::remove(targets.begin(), targets.end(), target), targets.end());
}

Control* Control::mostMoved(const std::vector<Control*>& candidates) {
    Control* best = nullptr;
    for (Control* candidate : candidates)
        if (!best || candidate->change() > best->change())
            best = candidate;
    return best;
}

} // namespace UniDevice
