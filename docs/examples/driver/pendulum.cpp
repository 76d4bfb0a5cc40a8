// A device driver: one device, "Pendulum", with one control that swings between -1 and 1 once per
// second. This file holds all that the core needs to know about a source of live input.

#include "core/base/sdk/export.h"
#include "core/base/sdk/log.h"
#include "unidevice/sdk/control.h"
#include "unidevice/sdk/device.h"
#include "unidevice/sdk/device_handler.h"
#include "unidevice/sdk/driver.h"
#include "unidevice/sdk/driver_load_info.h"

#include <chrono>
#include <cmath>
#include <cstdint>
#include <vector>

namespace {

constexpr double kPi = 3.14159265358979323846;

class Pendulum final : public UniDevice::Device {
public:
    Pendulum() : Device(true), swing_(this, UniDevice::finite, 0.05) {
        name = "Pendulum";
        // Saved bindings name a control by these two; a description may change, a type must not.
        swing_.type = "swing";
        swing_.index = 0;
        swing_.description = "Swing";
    }

    std::int32_t controlCount() const override { return 1; }
    UniDevice::Control* control(std::int32_t index) override {
        return index == 0 ? &swing_ : nullptr;
    }

    // Called once per frame of a take. A real device reads here what has arrived since, and never
    // waits.
    bool update(std::int32_t) override {
        const std::chrono::duration<double> seconds = std::chrono::steady_clock::now() - begin_;
        swing_.setValue(std::sin(2.0 * kPi * seconds.count()));
        return true;
    }

    // While the user looks for a control to bind, the one that moves most is chosen.
    bool prepareDetection() override { return update(0); }
    UniDevice::Control* detectControl(const std::vector<UniDevice::Control*>* excluded,
                                      void*) override {
        update(0);
        return mostMovedControl(excluded);
    }

    void resetControls() override { swing_.resetValues(); }

private:
    UniDevice::Control swing_;
    const std::chrono::steady_clock::time_point begin_ = std::chrono::steady_clock::now();
};

} // namespace

MVR_EXPORT std::int32_t getVersion() {
    return UniDevice::kDriverInterfaceVersion;
}

MVR_EXPORT void loadDevices(UniDevice::DeviceHandler* handler,
                            const UniDevice::DriverLoadInfo* info) {
    // From here on, this library's copy of the code works on the core's handler and log.
    UniDevice::DeviceHandler::adopt(handler);
    MVR::Log::adopt(info->log);

    // The core destroys the device when the host detaches. The core's own driver polls it; a
    // library with many devices, or one connection for all of them, derives its own
    // UniDevice::Driver.
    auto* const pendulum = new Pendulum;
    pendulum->setDriver(handler->findDriver("dummydriver"));
}
