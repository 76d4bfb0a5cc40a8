#include "instance/plugin_instance_virtual_device.h"

#include "unidevice/emulated_trinary_device.h"
#include "unidevice/sdk/device_handler.h"

#include <algorithm>

namespace MVR {

void PluginInstanceVirtualDevice::setEnabled(bool enabled) {
    enabled_ = enabled;
    if (enabled)
        enterList();
    else
        unregister();
}

void PluginInstanceVirtualDevice::withdrawDevice() {
    position_ = handlerIndex();
    unregister();
}

void PluginInstanceVirtualDevice::restoreDevice() {
    enterList();
}

void PluginInstanceVirtualDevice::enterList() {
    const UniDevice::DeviceHandler& handler = *UniDevice::DeviceHandler::instance();
    const auto count = static_cast<std::int32_t>(handler.devices.size());
    if (position_ < 0)
        position_ = count - 1;
    // Other devices may have gone meanwhile, and the emulation stays the last.
    const std::int32_t last =
        handler.indexOf(handler.findDevice(UniDevice::EmulatedTrinaryDevice::kName, 0));
    registerWith(std::min(position_, last >= 0 ? last : count), nullptr);
}

} // namespace MVR
