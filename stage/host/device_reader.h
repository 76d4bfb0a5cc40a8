#pragma once

#include "core/base/sdk/log.h"
#include "stage/base/machine.h"
#include "unidevice/sdk/device_handler.h"

#include <string>
#include <vector>

namespace Stage {

/// The input devices of the driver libraries, without a core: shows a person which control is
/// which.
///
/// 1. load() once.
/// 2. update(), then toText(), as often as wanted.
class DeviceReader {
public:
    DeviceReader() = default;
    DeviceReader(const DeviceReader&) = delete;
    DeviceReader& operator=(const DeviceReader&) = delete;
    ~DeviceReader();

    /// Loads each driver library of the folder and activates the devices. Returns a line for each
    /// library that can't be used.
    std::vector<std::string> load(const std::string& folder);

    void update() { handler_->update(); }

    /// Returns a line for each device and each of its controls, which begins with what follows "="
    /// in a binding.
    [[nodiscard]] std::string toText() const;
    [[nodiscard]] bool isEmpty() const { return handler_->devices.empty(); }
    /// Returns what the drivers logged.
    [[nodiscard]] static std::string getLog() { return MVR::Log::getText(); }

private:
    UniDevice::DeviceHandler* handler_ = UniDevice::DeviceHandler::instance(); // this program's
    std::vector<SharedLibrary> libraries_;
};

} // namespace Stage
