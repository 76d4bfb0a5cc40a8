#pragma once

#include "core/util/sdk/singleton.h"
#include "unidevice/sdk/lookup_index.h"

#include <cstdint>
#include <string>
#include <unordered_map>
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
/// Drivers and devices may come and go during each of their calls; one that comes is called the
/// next time. What a driver or a device throws is named in the log, and it is left out of polling
/// and detection until the next activation. Host thread only.
class DeviceHandler : public MVR::Util::Singleton<DeviceHandler> {
public:
    DeviceHandler(const DeviceHandler&) = delete;
    DeviceHandler& operator=(const DeviceHandler&) = delete;

    /// Destroys the remaining devices and drivers, last first.
    ~DeviceHandler() override;

    /// Returns the position of `device` in the list, or -1.
    [[nodiscard]] std::int32_t indexOf(const Device* device) const;

    /// Returns the first device with this name and index, or null.
    [[nodiscard]] Device* findDevice(const std::string& name, std::int32_t deviceIndex) const;

    /// Returns the first driver with this name, or null.
    [[nodiscard]] Driver* findDriver(const std::string& name) const;

    /// Returns the control that a saved binding names, or null. A device may create it on demand.
    [[nodiscard]] Control* findControl(const MVR::Tag& tag) const;

    /// Polls all drivers in order, once per simulated frame; the core's own, "dummydriver", last.
    /// Always returns true.
    bool update();

    /// Calls all drivers, also after a failure. Returns false if any of them did.
    bool activate();
    bool deactivate();

    void resetControls();

    /// Returns true if any device participates in the detection.
    bool prepareDetection();

    /// Returns the control that moved most since the last poll, the first of equals, or null.
    /// `excluded` lists controls to leave out, or is null.
    Control* detectControl(const std::vector<Control*>* excluded);

    /// Returns the first control of `device` that `tag` names, or null; for Device::findControl().
    [[nodiscard]] Control* findControlOf(Device& device, std::int32_t count, const MVR::Tag& tag);
    /// Forgets where the controls of `device` are, which leaves the list.
    void forgetControlsOf(const Device* device) { controlPlaces_.erase(device); }

    /// Destroys all listed devices, last first.
    void destroyDevices();

    /// Destroys all drivers, last first.
    void destroyDrivers();

    // Each joins on construction and may leave when its library or the host destroys it.
    // destroyDrivers() and destroyDevices() free those that are left.
    std::vector<Driver*> drivers;
    std::vector<Device*> devices; ///< see `Device::registerWith`

    /// Set by the core: names a driver and its library, for the log; null for the driver's name
    /// alone.
    std::string (*describeDriver)(const Driver& driver) = nullptr;

private:
    friend class MVR::Util::Singleton<DeviceHandler>;
    DeviceHandler() = default;

    /// Calls all drivers, also after a failure.
    bool callAll(const char* operation, bool (Driver::*act)());
    template <class Call>
    bool callDriver(Driver& driver, const char* operation, const Call& call);
    [[nodiscard]] bool hasFailed(const Driver& driver) const;

    mutable LookupIndex devicePlaces_;
    std::unordered_map<const Device*, LookupIndex> controlPlaces_;
    std::vector<const Driver*> failed_; // those that threw since the last activation
};

} // namespace UniDevice
