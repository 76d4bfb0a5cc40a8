#include "recording/silent_inputs.h"

#include "core/util/sdk/edit_distance.h"
#include "instance/plugin_instance.h"
#include "unidevice/driver_libraries.h"
#include "unidevice/sdk/control.h"
#include "unidevice/sdk/device.h"
#include "unidevice/sdk/device_handler.h"

#include <algorithm>
#include <cstddef>
#include <string>
#include <unordered_set>
#include <utility>

namespace MVR {
namespace {

constexpr std::size_t kMostNamed = 3;
constexpr std::size_t kLettersPerSlip = 4; // a name with one wrong letter in so many may be meant

/// Calls `visit` for each control of the devices that drivers made.
template <class Visit>
void forEachControl(const Visit& visit) {
    for (UniDevice::Device* device : UniDevice::DeviceHandler::instance()->devices) {
        if (UniDevice::isBuiltIn(*device))
            continue;
        for (std::int32_t i = 0; i < device->controlCount(); ++i)
            if (const UniDevice::Control* const control = device->control(i))
                visit(*control);
    }
}

std::string nameOf(const UniDevice::Control& control) {
    return control.type + ":" + std::to_string(control.index);
}

/// Returns true if what is stored from `from` on has one value only.
bool isStill(const Util::AVar_Linear<double>& values, double from) {
    const Util::KeySequence& keys = values.getKeys();
    for (std::size_t i = keys.size(); i > 1 && keys[i - 2].time >= from; --i)
        if (keys[i - 1].value != keys[i - 2].value)
            return false;
    return true;
}

} // namespace

void SilentInputs::start(const std::vector<PluginInstance*>& tools) {
    before_.clear();
    const std::unordered_set<const UniDevice::Device*> left(tools.begin(), tools.end());
    forEachControl([&](const UniDevice::Control& control) {
        if (left.count(control.device) == 0)
            before_[&control] = control.arrivals;
    });
}

std::uint32_t SilentInputs::countSince(const UniDevice::Control& control) const {
    const auto found = before_.find(&control);
    return control.arrivals - (found != before_.end() ? found->second : 0);
}

std::vector<CoreTakeNote> SilentInputs::find(const std::vector<PluginInstance*>& tools,
                                             double from) const {
    std::vector<CoreTakeNote> notes;
    for (PluginInstance* tool : tools) {
        const StoredInput::Values& stored = tool->getStoredInput().getValues();
        const UniDevice::PropertyHandler& properties = tool->getProperties();
        for (std::int32_t i = 0; i < properties.count(); ++i) {
            const UniDevice::Property& property = *properties.property(i);
            const UniDevice::Control* const control = property.control;
            if (control == nullptr || control->device == nullptr ||
                before_.find(control) == before_.end() || countSince(*control) != 0)
                continue;
            if (static_cast<std::size_t>(i) < stored.size() &&
                !isStill(stored[static_cast<std::size_t>(i)], from))
                continue; // of a driver that doesn't count
            std::vector<std::pair<std::size_t, const UniDevice::Control*>> near;
            forEachControl([&](const UniDevice::Control& other) {
                const std::size_t apart = Util::editDistance(nameOf(*control), nameOf(other));
                if (countSince(other) != 0 &&
                    apart <= std::max<std::size_t>(1, nameOf(*control).size() / kLettersPerSlip))
                    near.emplace_back(apart, &other);
            });
            std::stable_sort(near.begin(), near.end(),
                             [](const auto& a, const auto& b) { return a.first < b.first; });
            near.resize(std::min(near.size(), kMostNamed));
            std::string text = "no value from " + control->device->name + ":" + nameOf(*control) +
                               " for " + property.name + " of " + tool->getName();
            for (const auto& [apart, other] : near)
                text += "; " + nameOf(*other) + " sent " + std::to_string(countSince(*other));
            notes.push_back(
                {CoreTakeNote::kSilentInput, tool->getName(), property.name, 0, std::move(text)});
        }
    }
    return notes;
}

} // namespace MVR
