#pragma once

#include "core/contract/core_inputs.h"
#include "unidevice/sdk/driver_load_info.h"

#include <cstdint>
#include <string>
#include <vector>

/// Start and end of the input layer.
/// 1. `startDevices` once per process, at the first attachment. The caller keeps the flag and the
///    scoped log entry.
/// 2. `shutDownDevices` at each detachment. No device, driver or driver library is left after it.
namespace UniDevice {

class Device;

/// Creates the driver "dummydriver" and the keyboard, loads the driver libraries in the folder
/// "unidevice" of the install's data folder, and then creates the trinary emulator.
void startDevices(std::intptr_t moduleHandle, std::intptr_t hostWindow);

/// Destroys devices, then drivers, last first, then frees the driver libraries. Does nothing if
/// nothing was started. If a process never detaches, this happens when its singletons are
/// destroyed.
void shutDownDevices();

/// Loads each driver library of `folder`, in the order of the files' names, and lets it register
/// its devices. A file that is no library, lacks an export or has the wrong version is skipped
/// without a line in the log; listDrivers() tells of it. Each library gets `info` with
/// DriverFaults of its own. Returns the number of libraries that were kept.
std::int32_t loadDriverLibraries(const std::string& folder, const DriverLoadInfo& info);

/// See MVR::CoreInputs::listDrivers().
[[nodiscard]] std::vector<MVR::CoreDriver> listDrivers();

/// Returns true for the keyboard and the trinary emulator.
[[nodiscard]] bool isBuiltIn(const Device& device);

} // namespace UniDevice
