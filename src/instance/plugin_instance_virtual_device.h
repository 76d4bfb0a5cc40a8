// A tool as an input device: how it comes into the list of devices and leaves it.
#pragma once

#include "unidevice/sdk/device.h"

#include <cstdint>

namespace MVR {

/// The device side of a tool that offers values of its own as input to other tools.
///
/// It stays out of the device list until the tool has its first virtual control. The driver it
/// joined polls it, whether or not it is listed.
class PluginInstanceVirtualDevice : public UniDevice::Device {
public:
    PluginInstanceVirtualDevice() : Device(false) {}

    /// True puts the device into the device list, before the last one: the trinary emulation.
    void setEnabled(bool enabled);
    /// True once there is a virtual control: only then withdrawDevice() and restoreDevice() have a
    /// position in the list to care for.
    [[nodiscard]] bool isEnabled() const { return enabled_; }
    /// The tool left the tree: remembers its position in the list and leaves the list.
    void withdrawDevice();
    /// The tool is back in the tree: returns to that position.
    void restoreDevice();

private:
    void enterList();

    bool enabled_ = false;
    std::int32_t position_ = -1; // in the list, to come back to; negative: unknown
};

} // namespace MVR
