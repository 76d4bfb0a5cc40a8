#include "unidevice/sdk/driver.h"

#include "unidevice/sdk/device.h"
#include "unidevice/sdk/device_handler.h"

#include <algorithm>
#include <utility>

namespace UniDevice {

Driver::Driver(std::string driverName) : name(std::move(driverName)) {
    DeviceHandler::instance()->drivers.push_back(this);
}

bool Driver::activate() {
    return true;
}

bool Driver::deactivate() {
    return true;
}

Driver::~Driver() {
    DeviceHandler* handler = DeviceHandler::instance();
    std::vector<Driver*>& list = handler->drivers;
    list.erase(std::remove(list.begin(), list.end(), this), list.end());
    for (Device* device : handler->devices)
        if (device->driver == this)
            device->driver = nullptr;
}

void Driver::destroy() {
    delete this;
}

} // namespace UniDevice
