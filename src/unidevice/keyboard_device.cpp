#include "unidevice/keyboard_device.h"

#include "core/base/sdk/log.h"
#include "core/contract/key_codes.h"
#include "data/sdk/tag.h"
#include "platform/keyboard_hook.h"
#include "unidevice/sdk/binding_words.h"
#include "unidevice/sdk/device_handler.h"
#include "unidevice/sdk/driver.h"

#include <array>
#include <cstddef>

namespace UniDevice {

namespace {

constexpr double kThreshold = 0.5;

// The one that the hook feeds.
WINHOOK_KeyboardDevice* hookedDevice = nullptr;

} // namespace

WINHOOK_KeyboardDevice::WINHOOK_KeyboardDevice(std::intptr_t ownModule)
    : Device(true), moduleHandle(ownModule),
      keyControls_(kKeyCount, Control(this, binary, kThreshold)) {
    name = "Keyboard";
    setDriver(DeviceHandler::instance()->findDriver("dummydriver"));

    controlList_.reserve(kKeyCount);
    std::array<bool, kKeyCount> listed{};
    for (const MVR::NamedKey& key : MVR::kNamedKeys) {
        const auto code = static_cast<std::size_t>(key.code);
        Control& control = keyControls_[code];
        control.type = key.name;
        control.description = key.name;
        controlList_.push_back(&control);
        listed[code] = true;
    }
    for (std::int32_t code = 0; code < kKeyCount; ++code) {
        if (!listed[code]) {
            keyControls_[code].index = code; // a stored binding has nothing else to tell it by
            keyControls_[code].description = "Key_" + std::to_string(code);
            controlList_.push_back(&keyControls_[code]);
        }
    }
}

WINHOOK_KeyboardDevice::~WINHOOK_KeyboardDevice() {
    deactivate(0);
}

std::int32_t WINHOOK_KeyboardDevice::controlCount() const {
    return static_cast<std::int32_t>(controlList_.size());
}

Control* WINHOOK_KeyboardDevice::control(std::int32_t index) {
    return index >= 0 && index < controlCount() ? controlList_[index] : nullptr;
}

Control* WINHOOK_KeyboardDevice::findControl(const MVR::Tag& tag) {
    std::int32_t index = 0;
    MVR::Tag::textNode(tag.attribute(BindingWord::kIndex)).as(index);
    if (!tag.attribute(BindingWord::kType).empty() || index != 0)
        return Device::findControl(tag);
    MVR::Log(MVR::Log::Warning).write("A stored key has neither a name nor a code: bind it again");
    return nullptr;
}

bool WINHOOK_KeyboardDevice::update(std::int32_t) {
    return true; // the hook writes the values
}

bool WINHOOK_KeyboardDevice::prepareDetection() {
    resetControls();
    activate(0);
    return true;
}

Control* WINHOOK_KeyboardDevice::detectControl(const std::vector<Control*>* excluded, void*) {
    update(0);
    return mostMovedControl(excluded);
}

void WINHOOK_KeyboardDevice::resetControls() {
    for (Control& control : keyControls_)
        control.resetValues();
}

bool WINHOOK_KeyboardDevice::activate(std::int32_t reserved) {
    resetControls();
    // A hook left from before would see each key twice.
    deactivate(reserved);
    hookHandle_ = MVR::Platform::installKeyboardHook(&hookProcedure);
    hookedDevice = this;
    return true;
}

bool WINHOOK_KeyboardDevice::deactivate(std::int32_t) {
    if (hookHandle_ != 0) {
        MVR::Platform::removeKeyboardHook(hookHandle_);
        hookHandle_ = 0;
        hookedDevice = nullptr;
    }
    return true;
}

std::intptr_t WINHOOK_KeyboardDevice::hookProcedure(int code, std::uint32_t virtualKey,
                                                    std::uint32_t flags) {
    using namespace MVR::Platform;
    WINHOOK_KeyboardDevice* device = hookedDevice;
    if (!device)
        return callNextHook(0, code, virtualKey, flags);
    if ((code == kHookAction || code == kHookNoRemove) && virtualKey < kKeyCount)
        device->keyControls_[virtualKey].setValue(flags & kFlagReleased ? 0.0 : 1.0);
    return callNextHook(device->hookHandle_, code, virtualKey, flags);
}

} // namespace UniDevice
