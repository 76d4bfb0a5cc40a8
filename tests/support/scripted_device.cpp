#include "support/scripted_device.h"

#include "unidevice/sdk/device_handler.h"

namespace MVR::Testing {

ScriptedDevice::ScriptedDevice(const std::string& deviceName) : Device(true) {
    name = deviceName;
    setDriver(UniDevice::DeviceHandler::instance()->findDriver("dummydriver"));
}

UniDevice::Control* ScriptedDevice::add(const std::string& type, std::int32_t kindMask,
                                        std::int32_t index) {
    controls_.push_back(std::make_unique<UniDevice::Control>(this, kindMask, 0.1));
    UniDevice::Control* made = controls_.back().get();
    made->type = type;
    made->index = index;
    made->description = type;
    return made;
}

void ScriptedDevice::set(const std::string& type, double value) {
    for (const auto& control : controls_) {
        if (control->type == type) {
            control->setValue(value);
            return;
        }
    }
}

void ScriptedDevice::remove(const std::string& type) {
    std::erase_if(
        controls_, [&](const auto& control) { return control->type == type; });
}

std::int32_t ScriptedDevice::controlCount() const {
    return static_cast<std::int32_t>(controls_.size());
}

UniDevice::Control* ScriptedDevice::control(std::int32_t index) {
    return index >= 0 && index < controlCount() ? controls_[index].get() : nullptr;
}

bool ScriptedDevice::update(std::int32_t) {
    ++updates;
    if (onUpdate)
        onUpdate();
    return true;
}

bool ScriptedDevice::prepareDetection() {
    for (const auto& control : controls_)
        control->previousValue = control->value;
    return true;
}

UniDevice::Control* ScriptedDevice::detectControl(const std::vector<UniDevice::Control*>* excluded,
                                                  void*) {
    update(0);
    return mostMovedControl(excluded);
}

void ScriptedDevice::resetControls() {
    for (const auto& control : controls_)
        control->resetValues();
}

bool ScriptedDevice::activate(std::int32_t) {
    ++activations;
    return works;
}

bool ScriptedDevice::deactivate(std::int32_t) {
    ++deactivations;
    return works;
}

} // namespace MVR::Testing
