#include "core/extensions/input_contract.h"

#include "core/base/border.h"
#include "core/base/error_codes.h"
#include "core/extensions/tool_lookup.h"
#include "core/services/core_services.h"
#include "instance/plugin_instance.h"
#include "plugins/instance_manager.h"
#include "unidevice/driver_libraries.h"
#include "unidevice/polling.h"
#include "unidevice/sdk/control.h"
#include "unidevice/sdk/device.h"
#include "unidevice/sdk/device_handler.h"
#include "unidevice/sdk/driver.h"

#include <unordered_set>

namespace MVR {
namespace {

using UniDevice::DeviceHandler;

void describe(UniDevice::Device& device, CoreDevice& described) {
    described.name = device.name;
    described.index = device.deviceIndex;
    if (device.driver != nullptr)
        described.driver = device.driver->name;
    const std::int32_t count = device.controlCount();
    for (std::int32_t i = 0; i < count; ++i)
        if (const UniDevice::Control* const control = device.control(i))
            described.controls.push_back({control->type, control->index, control->description,
                                          control->kindMask, control->getValue()});
}

} // namespace

std::vector<CoreDevice> InputContract::list() {
    std::unordered_set<const UniDevice::Device*> tools;
    for (const PluginInstance* tool : services_.getTree().getInstances(false))
        tools.insert(tool);
    std::vector<CoreDevice> list;
    UniDevice::forEachPresent(DeviceHandler::instance()->devices, [&](UniDevice::Device& device) {
        CoreDevice& entry = list.emplace_back();
        entry.isTool = tools.count(&device) != 0;
        entry.isBuiltIn = UniDevice::isBuiltIn(device);
        (void)Border::call([&entry] { return "The device " + entry.name; }, "controls",
                           [&] { describe(device, entry); });
    });
    return list;
}

std::int32_t InputContract::setListening(bool isListening) {
    if (const std::int32_t code = refuseDuringTake(services_); code != 0)
        return code;
    DeviceHandler& devices = *DeviceHandler::instance();
    const bool hasEnded = devices.deactivate(); // allowed without activate()
    if (isListening ? devices.activate() : hasEnded)
        return 0;
    return reportCode(Codes::kInputInactive);
}

std::int32_t InputContract::update() {
    if (const std::int32_t code = refuseDuringTake(services_); code != 0)
        return code;
    services_.getTree().orderDevices();
    DeviceHandler::instance()->update();
    return 0;
}

std::vector<CoreDriver> InputContract::listDrivers() {
    return UniDevice::listDrivers();
}

} // namespace MVR
