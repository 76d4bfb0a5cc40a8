#include "osc_driver.h"

#include "osc_config.h"
#include "osc_device.h"

#include "core/base/sdk/export.h"
#include "core/base/sdk/log.h"
#include "unidevice/sdk/device_handler.h"
#include "unidevice/sdk/driver_faults.h"
#include "unidevice/sdk/driver_load_info.h"

OscDriver::~OscDriver() {
    if (device_)
        device_->driver = nullptr;
}

void OscDriver::update() {
    if (device_)
        device_->update(0);
}

std::int32_t OscDriver::prepareDetection() {
    return device_ && device_->prepareDetection() ? 1 : 0;
}

UniDevice::Control* OscDriver::detectControl(const std::vector<UniDevice::Control*>* excluded) {
    return device_ ? device_->detectControl(excluded, nullptr) : nullptr;
}

bool OscDriver::addDevice(UniDevice::Device* device) {
    device_ = device;
    return true;
}

bool OscDriver::removeDevice(UniDevice::Device* device) {
    if (device != device_ || !device_)
        return false;
    device_ = nullptr;
    return true;
}

UniDevice::Device* OscDriver::device(std::int32_t index) {
    return index == 0 ? device_ : nullptr;
}

std::int32_t OscDriver::deviceCount() {
    return device_ ? 1 : 0;
}

bool OscDriver::activate() {
    return !device_ || device_->activate(0);
}

bool OscDriver::deactivate() {
    return !device_ || device_->deactivate(0);
}

MVR_EXPORT std::int32_t getVersion() {
    return UniDevice::kDriverInterfaceVersion;
}

MVR_EXPORT void loadDevices(UniDevice::DeviceHandler* handler,
                            const UniDevice::DriverLoadInfo* info) {
    UniDevice::DeviceHandler::adopt(handler);
    MVR::Log::adopt(info->log);
    // The handler owns both from here on and destroys them.
    auto* driver = new OscDriver;
    auto* device = new OscDevice(loadOscConfig(oscConfigPath()),
                                 [driver, faults = info->faults](const std::string& fault) {
                                     faults->setFault(driver, fault);
                                 });
    device->setDriver(driver);
}
