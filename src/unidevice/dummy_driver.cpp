#include "unidevice/dummy_driver.h"

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

void DummyDriver::update() {
    for (std::size_t i = 0; i < devices.size();) {
        Device* const device = devices[i];
        device->update(0);
        if (i < devices.size() && devices[i] == device) // else it was removed, as tools may be
            ++i;
    }
}

std::int32_t DummyDriver::prepareDetection() {
    std::int32_t taking = 0;
    for (Device* device : devices)
        taking += device->prepareDetection() ? 1 : 0;
    return taking;
}

Control* DummyDriver::detectControl(const std::vector<Control*>* excluded) {
    std::vector<Control*> moved;
    for (Device* device : devices)
        if (Control* control = device->detectControl(excluded, nullptr))
            moved.push_back(control);
    return Control::mostMoved(moved);
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

bool DummyDriver::activate() {
    bool all = true;
    for (Device* device : devices)
        all = device->activate(0) && all;
    return all;
}

bool DummyDriver::deactivate() {
    bool all = true;
    for (Device* device : devices)
        all = device->deactivate(0) && all;
    return all;
}

} // namespace UniDevice
