#pragma once

#include "core/util/sdk/singleton.h"

#include <cstdint>
#include <string>
#include <vector>

namespace MVR {
class Tag;
}

namespace UniDevice {

class Control;
class Device;
class Driver;

/// All drivers and devices of the process, in order of registration.
///
/// The library has one, reached by `instance()`. A driver library compiles its own copy of this
/// code: it calls `DeviceHandler::adopt(handler)` with the handler it is given, before anything
/// else, so that its own `instance()` yields the library's, and may look things up at any time from
/// then on. The operations that poll, activate, detect, reset and destroy are the core's to call.
/// Host thread only.
class DeviceHandler : public MVR::Util::Singleton<DeviceHandler> {
public:
    DeviceHandler(const DeviceHandler&) = delete;
    DeviceHandler& operator=(const DeviceHandler&) = delete;

    /// Destroys what is left of devices and drivers, last first.
    ~DeviceHandler() override;

    /// Position of `device` in the list, or -1.
    [[nodiscard]] std::int32_t indexOf(const Device* device) const;

    /// The first device with this name and index, or null.
    [[nodiscard]] Device* findDevice(const std::string& name, std::int32_t deviceIndex) const;

    /// The first driver with this name, or null.
    [[nodiscard]] Driver* findDriver(const std::string& name) const;

    /// The control that a saved binding names, or null. A device may make it on demand.
    [[nodiscard]] Control* findControl(const MVR::Tag& tag) const;

    /// Polls all drivers in order: once per simulated frame. Always true.
    bool update();

    /// All drivers, also after a failure; false if any returned false.
    bool activate();
    bool deactivate();

    void resetControls();

    /// True if any device takes part in the detection.
    bool prepareDetection();

    /// The control that moved most since the last poll, the first of equals, or null. `excluded`
    /// lists controls to leave out, or is null.
    Control* detectControl(const std::vector<Control*>* excluded);

    /// Destroys all listed devices, last first.
    void destroyDevices();

    /// Destroys all drivers, last first.
    void destroyDrivers();

    // Each joins on construction and may go by itself, its library's or the host's doing; what is
    // left is freed by destroyDrivers() and destroyDevices().
    std::vector<Driver*> drivers;
    std::vector<Device*> devices; ///< see `Device::registerWith`

private:
    friend class MVR::Util::Singleton<DeviceHandler>;
    DeviceHandler() = default;
};

} // namespace UniDevice
