#include "unidevice/dummy_driver.h"

#include "unidevice/control.h"
#include "unidevice/device.h"

#include <algorithm>

namespace UniDevice {

DummyDriver::DummyDriver() : Driver("dummydriver") {}

DummyDriver::~DummyDriver() {
    // Also those that no handler lists.
    for (Device* device : devices) {
        device->driver = nullptr;
    }
}

void DummyDriver::update() {
    for (Device* device : devices) {
        device->update(0);
    }
}

std::int32_t DummyDriver::prepareDetection() {
    std::int32_t taking = 0;
    for (Device* device : devices) {
        taking += device->prepareDetection() ? 1 : 0;
    }
    return taking;
}

Control* DummyDriver::detectControl(const std::vector<Control*>* excluded) {
    std::vector<Control*> moved;
    for (Device* device : devices) {
        if (Control* control = device->detectControl(excluded, nullptr)) {
            moved.push_back(control);
        }
    }
    return Control::mostMoved(moved);
}

bool DummyDriver::addDevice(Device* device) {
    devices.push_back(device);
    return true;
}

bool DummyDriver::removeDevice(Device* device) {
    const auto found = std::find(devices.begin(), devices.end(), device);
    if (found == devices.end()) {
        return false;
    }
    devices.erase(found);
    return true;
}

Device* DummyDriver::device(std::int32_t index) {
    return index >= 0 && index < deviceCount() ? devices[index] : nullptr;
}

std::int32_t DummyDriver::deviceCount() {
    return static_cast<std::int32_t>(devices.size());
}

bool DummyDriver::activate() {
    bool all = true;
    for (Device* device : devices) {
        all = device->activate(0) && all;
    }
    return all;
}

bool DummyDriver::deactivate() {
    bool all = true;
    for (Device* device : devices) {
        all = device->deactivate(0) && all;
    }
    return all;
}

} // namespace UniDevice
