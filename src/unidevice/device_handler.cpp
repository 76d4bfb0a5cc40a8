#include "unidevice/sdk/device_handler.h"

#include "core/base/border.h"
#include "core/util/thread_check.h"
#include "data/sdk/tag.h"
#include "unidevice/polling.h"
#include "unidevice/sdk/binding_words.h"
#include "unidevice/sdk/control.h"
#include "unidevice/sdk/device.h"
#include "unidevice/sdk/driver.h"

#include <algorithm>

namespace UniDevice {

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
    const auto fits = [&](const Device* device) {
        return device->name == name && device->deviceIndex == deviceIndex;
    };
    const std::size_t place = devicePlaces_.findDevice(devices, name);
    if (place != LookupIndex::kNone && fits(devices[place]))
        return devices[place];
    const auto found = std::find_if(devices.begin(), devices.end(), fits);
    return found != devices.end() ? *found : nullptr;
}

Driver* DeviceHandler::findDriver(const std::string& name) const {
    for (Driver* driver : drivers)
        if (driver->name == name)
            return driver;
    return nullptr;
}

Control* DeviceHandler::findControl(const MVR::Tag& tag) const {
    MVR::Util::checkHostThread();
    const auto lookIn = [&](Device& device) {
        return MVR::Border::ask(
            [&] { return describePresent(devices, device); }, "findControl",
            static_cast<Control*>(nullptr),
            [&] { return device.matches(tag) ? device.findControl(tag) : nullptr; });
    };
    const std::string name = tag.attribute(BindingWord::kDevice);
    const std::size_t place =
        name.empty() ? LookupIndex::kNone : devicePlaces_.findDevice(devices, name);
    const Device* const first = place != LookupIndex::kNone ? devices[place] : nullptr;
    Control* found = first != nullptr ? lookIn(*devices[place]) : nullptr;
    if (found != nullptr)
        return found;
    forEachPresent(devices, [&](Device& device) {
        if (found == nullptr && &device != first && (name.empty() || device.name == name))
            found = lookIn(device);
    });
    return found;
}

Control* DeviceHandler::findControlOf(Device& device, std::int32_t count, const MVR::Tag& tag) {
    return controlPlaces_[&device].findControl(device, count, tag);
}

/// A driver that threw may be gone.
template <class Call>
bool DeviceHandler::callDriver(Driver& driver, const char* operation, const Call& call) {
    const auto who = [&]() -> std::string {
        if (!isPresent(drivers, &driver))
            return "A driver that ended meanwhile";
        return describeDriver != nullptr ? describeDriver(driver) : "The driver " + driver.name;
    };
    const bool isWhole = MVR::Border::call(who, operation, call);
    if (!isWhole)
        failed_.push_back(&driver);
    return isWhole;
}

bool DeviceHandler::hasFailed(const Driver& driver) const {
    return !failed_.empty() && isPresent(failed_, &driver);
}

bool DeviceHandler::update() {
    MVR::Util::checkHostThread();
    Driver* const last = findDriver("dummydriver");
    const auto poll = [this](Driver& driver) {
        if (!hasFailed(driver))
            (void)callDriver(
                driver, "update", [&driver] { driver.update(); });
    };
    forEachPresent(drivers, [&](Driver& driver) {
        if (&driver != last)
            poll(driver);
    });
    if (last != nullptr && isPresent(drivers, last))
        poll(*last);
    return true;
}

bool DeviceHandler::callAll(const char* operation, bool (Driver::*act)()) {
    MVR::Util::checkHostThread();
    failed_.clear();
    bool all = true;
    forEachPresent(drivers, [&](Driver& driver) {
        bool isDone = false;
        (void)callDriver(driver, operation, [&] { isDone = (driver.*act)(); });
        all = isDone && all;
    });
    return all;
}

bool DeviceHandler::activate() {
    return callAll("activate", &Driver::activate);
}

bool DeviceHandler::deactivate() {
    return callAll("deactivate", &Driver::deactivate);
}

void DeviceHandler::resetControls() {
    MVR::Util::checkHostThread();
    forEachPresent(devices, [this](Device& device) {
        (void)MVR::Border::call([&] { return describePresent(devices, device); }, "resetControls",
                                [&device] { device.resetControls(); });
    });
}

bool DeviceHandler::prepareDetection() {
    MVR::Util::checkHostThread();
    // No early return: each driver starts its own detection.
    std::int32_t taking = 0;
    failed_.clear();
    forEachPresent(drivers, [&](Driver& driver) {
        (void)callDriver(driver, "prepareDetection", [&] { taking += driver.prepareDetection(); });
    });
    return taking != 0;
}

Control* DeviceHandler::detectControl(const std::vector<Control*>* excluded) {
    if (devices.empty())
        return nullptr;
    MovedControls moved;
    forEachPresent(drivers, [&](Driver& driver) {
        if (!hasFailed(driver))
            (void)callDriver(driver, "detectControl",
                             [&] { moved.add(driver.detectControl(excluded)); });
    });
    return moved.getMost();
}

void DeviceHandler::destroyDevices() {
    while (!devices.empty()) {
        Device* last = devices.back();
        (void)MVR::Border::call([] { return std::string("A device"); }, "destroy",
                                [last] { last->destroy(); });
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
        (void)MVR::Border::call([] { return std::string("A driver"); }, "destroy",
                                [last] { last->destroy(); });
    }
}

} // namespace UniDevice
