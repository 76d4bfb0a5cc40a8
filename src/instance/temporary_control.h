// What stands in for a live control while a take is simulated again.
#pragma once

#include "unidevice/sdk/control.h"
#include "unidevice/sdk/control_target.h"
#include "unidevice/sdk/property.h"

#include <cstdint>

namespace MVR {

/// Stands in for a property's control, fed from the stored values, and keeps the property's own
/// binding for later. The device may be removed meanwhile; then there is no control to go back to.
class TemporaryControl final : public UniDevice::Control, public UniDevice::ControlTarget {
public:
    /// `index` is that of the property among those of its tool.
    explicit TemporaryControl(std::int32_t index);
    ~TemporaryControl() override;

    /// Binds `property` to this control and keeps the control that it had.
    void standIn(UniDevice::Property& property);
    /// Gives `property` its own binding back.
    void giveBack(UniDevice::Property& property);

    /// Writes the binding that is kept, so that a scene that is saved meanwhile holds the user's
    /// own; empty if there is none.
    void toTag(Tag& out) const override;

    void controlRemoved(UniDevice::Control* control) override;

private:
    void keep(UniDevice::Control* control);

    UniDevice::Control* kept_ = nullptr; // not owned
};

} // namespace MVR
