#pragma once

#include "unidevice/sdk/control.h"
#include "unidevice/sdk/device.h"

#include <cstdint>
#include <vector>

namespace UniDevice {

/// The keyboard: one `binary` control for each virtual-key code. A key has its name as type; one
/// without a name has its code as index.
///
/// Its hook on the host's key events is in place between `activate` and `deactivate` and swallows
/// nothing. There is one instance, made at start-up.
class WINHOOK_KeyboardDevice : public Device {
public:
    static constexpr std::int32_t kKeyCount = 256;

    /// Registers the device, joins the driver "dummydriver" if there is one, and builds the
    /// controls.
    explicit WINHOOK_KeyboardDevice(std::intptr_t ownModule);
    ~WINHOOK_KeyboardDevice() override;

    [[nodiscard]] std::int32_t controlCount() const override;
    [[nodiscard]] Control* control(std::int32_t index) override;
    /// Older files have index 0 for each key without a name: that finds none, and is logged.
    Control* findControl(const MVR::Tag& tag) override;
    bool update(std::int32_t reserved) override;
    bool prepareDetection() override;
    Control* detectControl(const std::vector<Control*>* excluded, void* context) override;
    void resetControls() override;
    bool activate(std::int32_t reserved) override;
    bool deactivate(std::int32_t reserved) override;

    std::intptr_t moduleHandle; ///< the module that installs the hook

private:
    static std::intptr_t hookProcedure(int code, std::uint32_t virtualKey, std::uint32_t flags);

    std::vector<Control> keyControls_;  ///< by virtual-key code
    std::vector<Control*> controlList_; ///< the same controls in the order that the user sees
    std::intptr_t hookHandle_ = 0;      ///< 0 while there is no hook
};

} // namespace UniDevice
