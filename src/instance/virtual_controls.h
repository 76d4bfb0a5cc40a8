// The values that a tool offers as input to other tools.
#pragma once

#include "core/util/sdk/dynamic_object.h"
#include "plugins/contract/c_interface.h"
#include "unidevice/sdk/control.h"

#include <cstdint>
#include <vector>

namespace MVR {

/// A value that a tool offers as input to other tools; the tool writes it.
class VirtualControl final : public UniDevice::Control {
public:
    using Control::Control;
};

/// The virtual controls of one tool, in order of creation. The list only grows: a tool may keep
/// pointers to its controls.
class VirtualControls {
public:
    /// Returns the new control, of the device `owner`.
    UniDevice::Control* add(UniDevice::Device& owner,
                            const CInterface::VirtualControlRecord& record);
    [[nodiscard]] std::int32_t count() const { return static_cast<std::int32_t>(controls_.size()); }
    /// Returns the control at `index`, or null if that is out of range.
    [[nodiscard]] UniDevice::Control* at(std::int32_t index) const;

private:
    std::vector<Util::Owned<VirtualControl>> controls_;
};

} // namespace MVR
