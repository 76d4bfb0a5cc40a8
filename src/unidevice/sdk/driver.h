#pragma once

#include <cstdint>
#include <string>
#include <vector>

namespace UniDevice {

class Control;
class Device;

/// A group of devices that are polled together. A driver library brings one or more.
///
/// How a driver library is called, all on the host's thread:
/// 1. `getVersion()` (exported) must return `kDriverInterfaceVersion`, else the library is freed
///    again without a further call.
/// 2. `loadDevices(handler, info)` (exported): first `DeviceHandler::adopt(handler)`, so that the
///    library's own copy of the code finds the core's handler, and `MVR::Log::adopt(info->log)`,
///    so that its lines go to the core's log; then `new` drivers and devices, which register
///    themselves. These pointers and `info->faults`, by which the library tells what doesn't work,
///    stay valid until it is freed.
/// 3. Saved bindings may be looked up from here on: `Device::findControl`.
/// 4. `activate()` when a take begins, `update()` once per simulated frame before the tools run,
///    `deactivate()` when the take ends. `update()` is also called outside of takes, for live
///    displays.
/// 5. While the user looks for a control: `prepareDetection()`, then `detectControl` every 30 ms
///    or so, then `deactivate()`.
/// 6. When the host detaches: `destroy()` on each device, last first, then on each driver, last
///    first, then the library is freed. None of its code may run after that: no thread, no
///    callback.
///
/// An exception that leaves one of these calls is caught and named in the log. A driver or device
/// that threw is left out of polling and detection until the next `activate`, `deactivate` or
/// `prepareDetection`; its controls keep their values.
///
/// The core calls the virtual operations, at these moments; `device` and `deviceCount` at any time
/// from 2 to 6. The order of the virtual operations is shared with separately built libraries.
class Driver {
public:
    /// Joins the end of the handler's list of drivers, which owns it from then on.
    explicit Driver(std::string name);
    Driver(const Driver&) = delete;
    Driver& operator=(const Driver&) = delete;

    /// Polls all devices of the driver. Never blocks; its work is bounded, whatever has arrived.
    virtual void update() = 0;

    /// Starts a detection. Returns how many of the devices participate.
    virtual std::int32_t prepareDetection() = 0;

    /// Returns the control of this driver that moved most since the last poll, or null. `excluded`
    /// lists controls to leave out, or is null.
    virtual Control* detectControl(const std::vector<Control*>* excluded) = 0;

    /// Called by `Device::setDriver`. Appends the device, which isn't owned, and returns true.
    virtual bool addDevice(Device* device) = 0;

    /// Called by `Device::clearDriver`. Removes the first entry of the device; returns true if
    /// there was one.
    virtual bool removeDevice(Device* device) = 0;

    /// Returns the device at `index`, or null if `index` is out of range.
    virtual Device* device(std::int32_t index) = 0;

    virtual std::int32_t deviceCount() = 0;

    /// A take begins. Returns false if a device can't participate; true by default.
    virtual bool activate();

    /// The take or the detection ended. Returns true by default.
    virtual bool deactivate();

    /// Leaves the handler. Listed devices that still name this driver forget it.
    virtual ~Driver();

    /// Frees the driver in the library that made it.
    virtual void destroy();

    std::string name;
};

} // namespace UniDevice
