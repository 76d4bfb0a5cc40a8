#pragma once

#include <string>

namespace UniDevice {

class Driver;

/// By which a driver library tells what is wrong with its drivers now, such as a port that is
/// taken. Hosts show it to the user (MVR::CoreInputs::listDrivers), and the core writes it to the
/// log.
///
/// Each library gets one, in DriverLoadInfo. The core owns it; valid until the library is freed.
/// Host thread only. A later version adds operations at the end.
class DriverFaults {
public:
    /// Sets what is wrong with `driver`, in English, for the user; "" once it works again. The text
    /// replaces the one before and holds until the next one; a new one is logged as a warning,
    /// after the driver's name. `driver` is one of the library's own, or null for what concerns the
    /// library as a whole, or devices that another driver polls. Say "" before a driver ends while
    /// the library stays. Allowed from `loadDevices` on, also while the library is being freed.
    virtual void setFault(const Driver* driver, std::string fault) = 0;

protected:
    ~DriverFaults() = default;
};

} // namespace UniDevice
