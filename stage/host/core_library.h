#pragma once

#include "core/contract/core_interface.h"
#include "core/contract/host_event.h"
#include "stage/base/machine.h"

#include <string>

namespace Stage {

/// Returns the path of the core: `option` if it isn't empty, else what MIRVANE_CORE names, else
/// "../lib/mirvane/libcore.so" or "libcore.so" relative to the program's folder; empty if there is
/// no such file.
std::string findCore(const std::string& option);

/// The core as a shared library: its three exports and the event pump.
class CoreLibrary {
public:
    /// Returns false, with the reason in `error`, if the file isn't a library, lacks an export or
    /// has another version than this program was built for.
    [[nodiscard]] bool load(const std::string& path, std::string& error);

    /// Returns null if the core refuses; its log says why.
    MVR::CoreInterface* attach(MVR::AdaptorInterface& adaptor) const { return attach_(&adaptor); }
    void detach(MVR::CoreInterface* core) const { detach_(core); }
    std::int32_t getVersion() const { return getVersion_(); }
    /// Runs what is due. Returns the milliseconds until the next event, or -1 if none is waiting.
    std::int32_t pump() const { return pump_(nullptr); }

private:
    SharedLibrary library_;
    MVR::AttachFunction attach_ = nullptr;
    MVR::DetachFunction detach_ = nullptr;
    MVR::GetVersionFunction getVersion_ = nullptr;
    MVR::PumpEventsFunction pump_ = nullptr;
};

} // namespace Stage
