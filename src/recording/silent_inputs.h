// Which inputs of a take got nothing from the controls that they are bound to.
#pragma once

#include "core/contract/core_takes.h"

#include <cstdint>
#include <unordered_map>
#include <vector>

namespace UniDevice {
class Control;
}

namespace MVR {

class PluginInstance;

/// 1. start() when the devices are active.
/// 2. find() when the last frame is simulated, and the devices are still there.
///
/// The controls of tools and of the core's own devices aren't asked: a key that nobody pressed is
/// no fault.
class SilentInputs {
public:
    /// `tools` are all that are placed.
    void start(const std::vector<PluginInstance*>& tools);
    /// Returns a note for each input of `tools` that is bound and got nothing. `from` is the time
    /// of the take's start.
    [[nodiscard]] std::vector<CoreTakeNote> find(const std::vector<PluginInstance*>& tools,
                                                 double from) const;

private:
    [[nodiscard]] std::uint32_t countSince(const UniDevice::Control& control) const;

    // How many values each control had got; a control that isn't there any more does no harm.
    std::unordered_map<const UniDevice::Control*, std::uint32_t> before_;
};

} // namespace MVR
