#pragma once

#include "core/base/sdk/export.h"

#include <cstdint>

namespace MVR {
class Log;
}

namespace UniDevice {

class DeviceHandler;
class DriverFaults;

/// What the export `getVersion` of a driver library must return.
inline constexpr std::int32_t kDriverInterfaceVersion = 120;

/// The value of `DriverLoadInfo::version`.
inline constexpr std::int32_t kDriverLoadInfoVersion = 1203;

/// What a driver library is told when it is loaded. Valid during `loadDevices` only; copy what you
/// need. The first three fields are in every version of the record. The core fills all of them.
struct DriverLoadInfo {
    std::int32_t version = kDriverLoadInfoVersion;
    std::intptr_t moduleHandle = 0; ///< the core library's own handle
    std::intptr_t hostWindow = 0;   ///< the host's main window; 0 if there is none
    MVR::Log* log = nullptr;        ///< the core's log, for `MVR::Log::adopt`
    DriverFaults* faults = nullptr; ///< to tell what is wrong; valid until the library is freed
};

/// The two exports of a driver library, under the undecorated names "getVersion" and "loadDevices",
/// each marked `MVR_EXPORT`. `Driver` lists the order of calls.
using GetDriverVersion = std::int32_t (*)();
using LoadDevices = void (*)(DeviceHandler* handler, const DriverLoadInfo* info);

} // namespace UniDevice
