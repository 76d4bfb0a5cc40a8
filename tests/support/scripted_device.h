#pragma once

#include "unidevice/sdk/control.h"
#include "unidevice/sdk/device.h"

#include <functional>
#include <memory>
#include <string>
#include <vector>

namespace MVR::Testing {

/// A device whose controls a test sets. Create it with `new`: it registers, joins the driver
/// "dummydriver" if there is one, and the device handler destroys it like any other.
class ScriptedDevice : public UniDevice::Device {
public:
    explicit ScriptedDevice(const std::string& deviceName);

    /// Adds a control; its description is its type.
    UniDevice::Control* add(const std::string& type,
                            std::int32_t kindMask = UniDevice::finite | UniDevice::infinite,
                            std::int32_t index = 0);

    /// Sets the first control of this type.
    void set(const std::string& type, double value);

    /// Frees a control, as a device does when it loses one.
    void remove(const std::string& type);

    std::int32_t controlCount() const override;
    UniDevice::Control* control(std::int32_t index) override;
    bool update(std::int32_t) override;
    bool prepareDetection() override;
    UniDevice::Control* detectControl(const std::vector<UniDevice::Control*>* excluded,
                                      void*) override;
    void resetControls() override;
    bool activate(std::int32_t) override;
    bool deactivate(std::int32_t) override;

    int updates = 0;
    int activations = 0;
    int deactivations = 0;
    bool works = true;              ///< what `activate` and `deactivate` return
    std::function<void()> onUpdate; ///< runs at each update, if set

private:
    std::vector<std::unique_ptr<UniDevice::Control>> controls_;
};

} // namespace MVR::Testing
