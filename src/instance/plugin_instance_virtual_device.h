/// \file
/// A tool as an input device: how it comes into the list of devices and leaves it.
#pragma once

#include "unidevice/sdk/device.h"

#include <cstdint>

namespace MVR {

/// The device side of a tool that offers values of its own as input to other tools.
///
/// It stays out of the device list until the tool has its first virtual control; polled it is by
/// the driver that it joined, listed or not.
class PluginInstanceVirtualDevice : public UniDevice::Device {
public:
    PluginInstanceVirtualDevice() : Device(false) {}

    /// True puts the device into the device list, before the last one: the trinary emulation.
    void setEnabled(bool enabled);
    /// True once there is a virtual control: only then withdrawDevice() and restoreDevice() have a
    /// place in the list to care for.
    [[nodiscard]] bool isEnabled() const { return enabled_; }
    /// The tool left the tree: remembers the place in the list and leaves it.
    void withdrawDevice();
    /// The tool is back in the tree: returns to that place.
    void restoreDevice();

private:
    void enterList();

    bool enabled_ = false;
    std::int32_t position_ = -1; // the place to come back to; negative: unknown
};

} // namespace MVR
