#pragma once

#include "core/contract/core_interface.h"
#include "core/contract/host_event.h"
#include "stage/base/machine.h"

#include <string>

namespace Stage {

/// Where the core is: `option` if it isn't empty, else what MIRVANE_CORE names, else
/// "../lib/mirvane/libcore.so" or "libcore.so" seen from the program's folder. Empty if there is no
/// such file.
std::string findCore(const std::string& option);

/// The core as a shared library: its three exports and the event pump.
class CoreLibrary {
public:
    /// False, with the reason in `error`, if the file is no library, lacks an export or is of
    /// another version than this program was built for.
    [[nodiscard]] bool load(const std::string& path, std::string& error);

    /// Null if the core refuses; its log tells why.
    MVR::CoreInterface* attach(MVR::AdaptorInterface& adaptor) const { return attach_(&adaptor); }
    void detach(MVR::CoreInterface* core) const { detach_(core); }
    std::int32_t getVersion() const { return getVersion_(); }
    /// Runs what is due. Milliseconds until the next event, 0 for at once, -1 if nothing waits.
    std::int32_t pump() const { return pump_(nullptr); }

private:
    SharedLibrary library_;
    MVR::AttachFunction attach_ = nullptr;
    MVR::DetachFunction detach_ = nullptr;
    MVR::GetVersionFunction getVersion_ = nullptr;
    MVR::PumpEventsFunction pump_ = nullptr;
};

} // namespace Stage
