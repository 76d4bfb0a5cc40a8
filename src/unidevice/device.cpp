#include "unidevice/sdk/device.h"

#include "data/sdk/tag.h"
#include "unidevice/attribute_fits.h"
#include "unidevice/sdk/binding_words.h"
#include "unidevice/sdk/control.h"
#include "unidevice/sdk/device_handler.h"
#include "unidevice/sdk/driver.h"

#include <algorithm>

namespace UniDevice {

Device::Device(bool registerNow) {
    if (registerNow)
        registerWith(-1, nullptr);
}

Device::~Device() {
    unregister();
    clearDriver();
}

void Device::toTag(MVR::Tag& out) const {
    out = MVR::Tag::element(BindingWord::kControl);
    out.attributeRef(BindingWord::kDevice) = name;
    if (deviceIndex != 0)
        out.attributeRef(BindingWord::kDeviceIndex) = std::to_string(deviceIndex);
}

Control* Device::findControl(const MVR::Tag& tag) {
    const std::int32_t count = controlCount();
    if (handler != nullptr)
        if (Control* const known = handler->findControlOf(*this, count, tag))
            return known;
    for (std::int32_t i = 0; i < count; ++i) {
        Control* candidate = control(i);
        if (candidate && candidate->matches(tag))
            return candidate;
    }
    return nullptr;
}

bool Device::activate(std::int32_t) {
    return true;
}

bool Device::deactivate(std::int32_t) {
    return true;
}

void Device::registerWith(std::int32_t position, DeviceHandler* newHandler) {
    unregister();
    handler = newHandler ? newHandler : DeviceHandler::instance();
    std::vector<Device*>& list = handler->devices;
    if (position < 0)
        list.push_back(this);
    else if (static_cast<std::size_t>(position) <= list.size())
        list.insert(list.begin() + position, this);
}

void Device::unregister() {
    if (!handler)
        return;
    std::vector<Device*>& list = handler->devices;
    list.erase(std::remove(list.begin(), list.end(), this), list.end());
    handler->forgetControlsOf(this);
    handler = nullptr;
}

void Device::setDriver(Driver* newDriver) {
    clearDriver();
    driver = newDriver;
    if (driver)
        driver->addDevice(this);
}

void Device::clearDriver() {
    if (driver) {
        driver->removeDevice(this);
        driver = nullptr;
    }
}

std::int32_t Device::handlerIndex() const {
    return handler ? handler->indexOf(this) : -1;
}

bool Device::matches(const MVR::Tag& tag) const {
    const std::string wanted = tag.attribute(BindingWord::kDevice);
    return (wanted.empty() || wanted == name) &&
           attributeFits(tag, BindingWord::kDeviceIndex, deviceIndex);
}

Control* Device::mostMovedControl(const std::vector<Control*>* excluded) {
    std::vector<Control*> moved;
    const std::int32_t count = controlCount();
    for (std::int32_t i = 0; i < count; ++i) {
        Control* candidate = control(i);
        const bool leftOut =
            excluded && std::find(excluded->begin(), excluded->end(), candidate) != excluded->end();
        if (candidate != nullptr && !leftOut && candidate->change() > candidate->threshold)
            moved.push_back(candidate);
    }
    return Control::mostMoved(moved);
}

} // namespace UniDevice
