#include "unidevice/emulated_trinary_device.h"

#include "core/base/sdk/log.h"
#include "data/sdk/tag.h"
#include "unidevice/sdk/binding_words.h"
#include "unidevice/sdk/device_handler.h"
#include "unidevice/sdk/driver.h"

#include <utility>

namespace UniDevice {

namespace {

constexpr double kThreshold = 0.1;
constexpr char kDirection[] = "te_direction";

void addSource(MVR::Tag& out, const Control* source, const char* direction) {
    if (!source)
        return;
    MVR::Tag child;
    source->toTag(child);
    child.attributeRef(kDirection) = direction;
    out.addChild(std::move(child));
}

std::string describe(const Control& source) {
    std::string text;
    if (source.device) {
        text = source.device->name;
        if (source.device->deviceIndex != 0)
            text += "(" + std::to_string(source.device->deviceIndex) + ")";
        text += ":";
    }
    return text + source.description;
}

/// Returns true if `tag` leaves nothing open, so that it names one control.
bool isExact(const MVR::Tag& tag) {
    return !tag.attribute(BindingWord::kDevice).empty() &&
           !tag.attribute(BindingWord::kIndex).empty();
}

bool isListed(const Control* control) {
    return control != nullptr && control->device != nullptr && control->device->handler != nullptr;
}

} // namespace

EmulatedTControl::EmulatedTControl(Control* up, Control* down, Device* owner, std::int32_t kinds,
                                   double leastChange)
    : Control(owner, kinds, leastChange), positive(up), negative(down) {
    if (positive)
        positive->targets.push_back(this);
    if (negative)
        negative->targets.push_back(this);
}

EmulatedTControl::~EmulatedTControl() {
    if (positive)
        positive->removeTarget(this);
    if (negative)
        negative->removeTarget(this);
}

void EmulatedTControl::toTag(MVR::Tag& out) const {
    Control::toTag(out);
    addSource(out, positive, "positive");
    addSource(out, negative, "negative");
}

bool EmulatedTControl::matches(const MVR::Tag& tag) const {
    if (!positive || !negative || !Control::matches(tag) ||
        tag.childCount(BindingWord::kControl) != 2)
        return false;
    bool positiveFits = false;
    bool negativeFits = false;
    for (std::int32_t i = 0; i < 2; ++i) {
        const MVR::Tag& source = tag.child(BindingWord::kControl, i);
        const std::string direction = source.attribute(kDirection);
        if (direction == "positive" && positive->matches(source))
            positiveFits = true;
        else if (direction == "negative" && negative->matches(source))
            negativeFits = true;
        else
            return false; // each of the two must name one source
    }
    return positiveFits && negativeFits;
}

double EmulatedTControl::getValue() const {
    return positive && negative ? positive->getValue() - negative->getValue() : 0.0;
}

void EmulatedTControl::controlRemoved(Control* removed) {
    if (positive == removed)
        positive = nullptr;
    if (negative == removed)
        negative = nullptr;
}

EmulatedTrinaryDevice::EmulatedTrinaryDevice() : Device(true) {
    name = kName;
    setDriver(DeviceHandler::instance()->findDriver("dummydriver"));
}

EmulatedTrinaryDevice::~EmulatedTrinaryDevice() {
    // Last first: an emulated control may be a source of a later one.
    while (!controls.empty())
        controls.pop_back();
}

std::int32_t EmulatedTrinaryDevice::controlCount() const {
    return static_cast<std::int32_t>(controls.size());
}

Control* EmulatedTrinaryDevice::control(std::int32_t index) {
    return index >= 0 && index < controlCount() ? controls[index].get() : nullptr;
}

bool EmulatedTrinaryDevice::update(std::int32_t) {
    return true;
}

EmulatedTControl* EmulatedTrinaryDevice::findBySources(const Control* up,
                                                       const Control* down) const {
    const auto found = bySources_.find({up, down});
    if (found == bySources_.end() || found->second->positive != up ||
        found->second->negative != down)
        return nullptr;
    return found->second;
}

/// Returns the control that `tag` names, if one of its sources is in no list, such as that of a
/// tool that was removed: nobody else finds that source.
EmulatedTControl* EmulatedTrinaryDevice::findUnlisted(const MVR::Tag& tag) const {
    for (const auto& control : controls)
        if ((!isListed(control->positive) || !isListed(control->negative)) && control->matches(tag))
            return control.get();
    return nullptr;
}

Control* EmulatedTrinaryDevice::findControl(const MVR::Tag& tag) {
    const MVR::Tag& first = tag.child(BindingWord::kControl, 0);
    const MVR::Tag& second = tag.child(BindingWord::kControl, 1);
    if (first.isEmpty() || second.isEmpty())
        return nullptr;
    if (!isExact(first) || !isExact(second)) // an existing control wins
        if (Control* const existing = Device::findControl(tag))
            return existing;
    if (nesting_ == kMaxNesting) {
        MVR::Log(MVR::Log::Warning).write("Emulated controls are nested too deep");
        return nullptr;
    }
    ++nesting_;
    Control* up = DeviceHandler::instance()->findControl(first);
    Control* down = DeviceHandler::instance()->findControl(second);
    --nesting_;
    if (up == nullptr || down == nullptr)
        return findUnlisted(tag);
    if (first.attribute(kDirection) == "negative")
        std::swap(up, down);
    return createControl(up, down);
}

bool EmulatedTrinaryDevice::prepareDetection() {
    for (const auto& control : controls)
        control->previousValue = control->value;
    return false;
}

Control* EmulatedTrinaryDevice::detectControl(const std::vector<Control*>*, void*) {
    return nullptr;
}

void EmulatedTrinaryDevice::resetControls() {
    for (const auto& control : controls)
        control->resetValues();
}

Control* EmulatedTrinaryDevice::createControl(Control* first, Control* second) {
    if (!first || !second)
        return nullptr;
    if (Control* const existing = findBySources(first, second))
        return existing;
    auto made = std::make_unique<EmulatedTControl>(first, second, this, trinary, kThreshold);
    made->type = "control";
    made->description = "emulated control (" + describe(*first) + ", " + describe(*second) + ")";
    bySources_[{first, second}] = made.get();
    controls.push_back(std::move(made));
    return controls.back().get();
}

} // namespace UniDevice
