#include "unidevice/keyboard_device.h"

#include "platform/keyboard_hook.h"
#include "unidevice/sdk/device_handler.h"
#include "unidevice/sdk/driver.h"

#include <array>

namespace UniDevice {

namespace {

constexpr double kThreshold = 0.5;

struct NamedKey {
    std::uint8_t virtualKey;
    const char* name; // in files: the spelling is frozen
};

// The order is the one that the user sees.
// clang-format off
constexpr NamedKey kNamedKeys[] = {
    {37, "Left_Arrow"}, {38, "Up_Arrow"}, {39, "Right_Arrow"}, {40, "Down_Arrow"},
    {8, "Backspace"}, {9, "Tab"}, {12, "Clear"}, {13, "RETUR"}, {16, "Shift"}, {17, "CTRL"},
    {18, "ALT"}, {19, "PAUSE"}, {20, "Caps_lock"}, {27, "Escape"}, {32, "Space"}, {33, "Page_UP"},
    {34, "Page_DOWN"}, {35, "End"}, {36, "Home"}, {45, "Insert"}, {46, "Delete"}, {48, "0"},
    {49, "1"}, {50, "2"}, {51, "3"}, {52, "4"}, {53, "5"}, {54, "6"}, {55, "7"}, {56, "8"},
    {57, "9"}, {65, "A"}, {66, "B"}, {67, "C"}, {68, "D"}, {69, "E"}, {70, "F"}, {71, "G"},
    {72, "H"}, {73, "I"}, {74, "J"}, {75, "K"}, {76, "L"}, {77, "M"}, {78, "N"}, {79, "O"},
    {80, "P"}, {81, "Q"}, {82, "R"}, {83, "S"}, {84, "T"}, {85, "U"}, {86, "V"}, {87, "W"},
    {88, "X"}, {89, "Y"}, {90, "Z"}, {187, "+"}, {189, "-"}, {190, "."}, {188, ","},
    {91, "Left_Windows_key"}, {92, "Right_Windows_key"}, {96, "Num_0"}, {97, "Num_1"},
    {98, "Num_2"}, {99, "Num_3"}, {100, "Num_4"}, {101, "Num_5"}, {102, "Num_6"}, {103, "Num_7"},
    {104, "Num_8"}, {105, "Num_9"}, {106, "Num_*"}, {107, "Num_+"}, {109, "Num_-"}, {110, "Num_,"},
    {111, "Num_/"}, {112, "F1"}, {113, "F2"}, {114, "F3"}, {115, "F4"}, {116, "F5"}, {117, "F6"},
    {118, "F7"}, {119, "F8"}, {120, "F9"}, {121, "F10"}, {122, "F11"}, {123, "F12"}, {124, "F13"},
    {125, "F14"}, {126, "F15"}, {127, "F16"}, {128, "F17"}, {129, "F18"}, {130, "F19"},
    {131, "F20"}, {132, "F21"}, {133, "F22"}, {134, "F23"}, {135, "F24"}, {164, "Left_MENU"},
    {165, "Right_MENU"},
};
// clang-format on

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
    for (const NamedKey& key : kNamedKeys) {
        Control& control = keyControls_[key.virtualKey];
        control.type = key.name;
        control.description = key.name;
        controlList_.push_back(&control);
        listed[key.virtualKey] = true;
    }
    for (std::int32_t code = 0; code < kKeyCount; ++code) {
        if (!listed[code]) {
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
    for (Control& control : keyControls_) {
        control.resetValues();
    }
}

bool WINHOOK_KeyboardDevice::activate(std::int32_t reserved) {
    resetControls();
    // A hook that is left from before would see each key twice.
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
    if (!device) {
        return callNextHook(0, code, virtualKey, flags);
    }
    if ((code == kHookAction || code == kHookNoRemove) && virtualKey < kKeyCount) {
        device->keyControls_[virtualKey].setValue(flags & kFlagReleased ? 0.0 : 1.0);
    }
    return callNextHook(device->hookHandle_, code, virtualKey, flags);
}

} // namespace UniDevice
