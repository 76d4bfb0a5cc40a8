#include "unidevice/sdk/device_handler.h"

#include "core/util/thread_check.h"
#include "unidevice/sdk/control.h"
#include "unidevice/sdk/device.h"
#include "unidevice/sdk/driver.h"

#include <algorithm>
#include <numeric>

namespace UniDevice {
namespace {

/// Calls `act` on each driver, and returns false if one of them did.
bool forAll(const std::vector<Driver*>& drivers, bool (Driver::*act)()) {
    bool all = true;
    for (Driver* driver : drivers)
        all = (driver->*act)() && all;
    return all;
}

} // namespace

DeviceHandler::~DeviceHandler() {
    destroyDevices();
    destroyDrivers();
}

std::int32_t DeviceHandler::indexOf(const Device* device) const {
    const auto found = std::find(devices.begin(), devices.end(), device);
    return found == devices.end() ? -1 : static_cast<std::int32_t>(found - devices.begin());
}

Device* DeviceHandler::findDevice(const std::string& name, std::int32_t deviceIndex) const {
    MVR::Util::checkHostThread();
    for (Device* device : devices)
        if (device->name == name && device->deviceIndex == deviceIndex)
            return device;
    return nullptr;
}

Driver* DeviceHandler::findDriver(const std::string& name) const {
    for (Driver* driver : drivers)
        if (driver->name == name)
            return driver;
    return nullptr;
}

Control* DeviceHandler::findControl(const MVR::Tag& tag) const {
    MVR::Util::checkHostThread();
    for (Device* device : devices) {
        if (device->matches(tag)) {
            if (Control* control = device->findControl(tag))
                return control;
        }
    }
    return nullptr;
}

bool DeviceHandler::update() {
    MVR::Util::checkHostThread();
    Driver* const last = findDriver("dummydriver");
    for (Driver* driver : drivers)
        if (driver != last)
            driver->update();
    if (last != nullptr)
        last->update();
    return true;
}

bool DeviceHandler::activate() {
    MVR::Util::checkHostThread();
    return forAll(drivers, &Driver::activate);
}

bool DeviceHandler::deactivate() {
    MVR::Util::checkHostThread();
    return forAll(drivers, &Driver::deactivate);
}

void DeviceHandler::resetControls() {
    MVR::Util::checkHostThread();
    for (Device* device : devices)
        device->resetControls();
}

bool DeviceHandler::prepareDetection() {
    MVR::Util::checkHostThread();
    // No early return: each driver starts its own detection.
    std::int32_t taking = 0;
    for (Driver* driver : drivers)
        taking += driver->prepareDetection();
    return taking != 0;
}

Control* DeviceHandler::detectControl(const std::vector<Control*>* excluded) {
    if (devices.empty())
        return nullptr;
    std::vector<Control*> moved;
    for (Driver* driver : drivers)
        if (Control* control = driver->detectControl(excluded))
            moved.push_back(control);
    return Control::mostMoved(moved);
}

void DeviceHandler::destroyDevices() {
    while (!devices.empty()) {
        Device* last = devices.back();
        last->destroy();
        // It leaves the list by itself, unless its library keeps it; then it must forget us.
        if (!devices.empty() && devices.back() == last) {
            devices.pop_back();
            last->unregister();
            last->clearDriver();
        }
    }
}

void DeviceHandler::destroyDrivers() {
    while (!drivers.empty()) {
        Driver* last = drivers.back();
        drivers.pop_back();
        last->destroy();
    }
}

} // namespace UniDevice
