#include "instance/plugin_instance_virtual_device.h"

#include "unidevice/sdk/device_handler.h"

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
    if (position_ < 0)
        position_ =
            static_cast<std::int32_t>(UniDevice::DeviceHandler::instance()->devices.size()) - 1;
    registerWith(position_, nullptr);
}

} // namespace MVR
