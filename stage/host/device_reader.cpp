#include "stage/host/device_reader.h"

#include "platform/sdk/files.h"
#include "unidevice/sdk/control.h"
#include "unidevice/sdk/device.h"
#include "unidevice/sdk/driver_load_info.h"

#include <cstdint>
#include <cstdio>
#include <utility>

namespace Stage {

DeviceReader::~DeviceReader() {
    handler_->deactivate();
    handler_->destroyDevices();
    handler_->destroyDrivers(); // before the libraries that created them
}

std::vector<std::string> DeviceReader::load(const std::string& folder) {
    std::vector<std::string> faults;
    for (const auto& file :
         MVR::Platform::listFiles(folder + "/" + MVR::Platform::libraryPattern())) {
        const std::string path = folder + "/" + file.name;
        SharedLibrary library;
        std::string error;
        if (!library.load(path, error)) {
            faults.push_back(path + " can't be loaded: " + error);
            continue;
        }
        const auto getVersion = library.find<UniDevice::GetDriverVersion>("getVersion");
        const auto loadDevices = library.find<UniDevice::LoadDevices>("loadDevices");
        if (getVersion == nullptr || loadDevices == nullptr ||
            getVersion() != UniDevice::kDriverInterfaceVersion) {
            faults.push_back(path + " isn't a driver library of version " +
                             std::to_string(UniDevice::kDriverInterfaceVersion));
            continue;
        }
        UniDevice::DriverLoadInfo info;
        info.log = MVR::Log::instance();
        loadDevices(handler_, &info);
        libraries_.push_back(std::move(library));
    }
    handler_->activate();
    return faults;
}

std::string DeviceReader::toText() const {
    std::string text;
    for (UniDevice::Device* device : handler_->devices) {
        std::string name = device->name;
        if (device->deviceIndex != 0)
            name += "#" + std::to_string(device->deviceIndex);
        text += name + ": " + std::to_string(device->controlCount()) + " controls\n";
        for (std::int32_t i = 0; i < device->controlCount(); ++i) {
            const UniDevice::Control* control = device->control(i);
            if (control == nullptr)
                continue;
            const std::string binding =
                name + ":" + control->type + ":" + std::to_string(control->index);
            char value[32];
            std::snprintf(value, sizeof value, "%14.6g", control->getValue());
            text += "  " + binding;
            text.append(binding.size() < 40 ? 40 - binding.size() : 1, ' ');
            text += std::string(value) + "  " + control->description + "\n";
        }
    }
    return text;
}

} // namespace Stage
