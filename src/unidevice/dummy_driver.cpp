#include "unidevice/dummy_driver.h"

#include "core/base/border.h"
#include "unidevice/polling.h"
#include "unidevice/sdk/control.h"
#include "unidevice/sdk/device.h"

#include <algorithm>
#include <cstddef>
#include <iterator>
#include <unordered_set>

namespace UniDevice {

DummyDriver::DummyDriver() : Driver(kName) {}

DummyDriver::~DummyDriver() {
    // Including those that no handler lists.
    for (Device* device : devices)
        device->driver = nullptr;
}

template <class Call>
bool DummyDriver::callDevice(Device& device, const char* operation, const Call& call) {
    const auto who = [&] { return describePresent(devices, device); };
    const bool isWhole = MVR::Border::call(who, operation, call);
    if (!isWhole && isPresent(devices, &device))
        failed_.push_back(&device);
    return isWhole;
}

void DummyDriver::update() {
    forEachPresent(
        devices,
        [this](Device& device) {
            if (failed_.empty() || !isPresent(failed_, &device))
                (void)callDevice(
                    device, "update", [&device] { device.update(0); });
        });
}

std::int32_t DummyDriver::prepareDetection() {
    std::int32_t taking = 0;
    failed_.clear();
    forEachPresent(devices, [&](Device& device) {
        (void)callDevice(device, "prepareDetection",
                         [&] { taking += device.prepareDetection() ? 1 : 0; });
    });
    return taking;
}

Control* DummyDriver::detectControl(const std::vector<Control*>* excluded) {
    MovedControls moved;
    forEachPresent(devices, [&](Device& device) {
        if (!isPresent(failed_, &device))
            (void)callDevice(device, "detectControl",
                             [&] { moved.add(device.detectControl(excluded, nullptr)); });
    });
    return moved.getMost();
}

bool DummyDriver::addDevice(Device* device) {
    devices.push_back(device);
    isOrdered_ = false;
    return true;
}

void DummyDriver::pollLast(const std::vector<Device*>& last) {
    isOrdered_ = true;
    const std::unordered_set<Device*> joined(devices.begin(), devices.end());
    const std::unordered_set<Device*> moved(last.begin(), last.end());
    devices.erase(std::remove_if(
                      devices.begin(), devices.end(),
                      [&moved](Device* each) { return moved.count(each) > 0; }),
                  devices.end());
    std::copy_if(last.begin(), last.end(), std::back_inserter(devices),
                 [&joined](Device* each) { return joined.count(each) > 0; });
}

bool DummyDriver::removeDevice(Device* device) {
    failed_.erase(std::remove(failed_.begin(), failed_.end(), device), failed_.end());
    // Thousands of tools leave in the order in which they came or in the reverse: the next to leave
    // is where the last one was, or before it.
    const std::size_t count = devices.size();
    const std::size_t start = std::min(lastPlace_, count);
    for (std::size_t distance = 0; distance < count; ++distance) {
        for (const std::size_t place : {start + distance, start - distance - 1}) {
            if (place < count && devices[place] == device) { // an index below 0 wraps
                devices.erase(devices.begin() + static_cast<std::ptrdiff_t>(place));
                lastPlace_ = place;
                return true;
            }
        }
    }
    return false;
}

Device* DummyDriver::device(std::int32_t index) {
    return index >= 0 && index < deviceCount() ? devices[index] : nullptr;
}

std::int32_t DummyDriver::deviceCount() {
    return static_cast<std::int32_t>(devices.size());
}

bool DummyDriver::callAll(const char* operation, bool (Device::*act)(std::int32_t)) {
    failed_.clear();
    bool all = true;
    forEachPresent(devices, [&](Device& device) {
        bool isDone = false;
        (void)callDevice(device, operation, [&] { isDone = (device.*act)(0); });
        all = isDone && all;
    });
    return all;
}

bool DummyDriver::activate() {
    return callAll("activate", &Device::activate);
}

bool DummyDriver::deactivate() {
    return callAll("deactivate", &Device::deactivate);
}

} // namespace UniDevice
