// The binding of a property, for the time when its control is gone.
#pragma once

#include "data/sdk/tag.h"
#include "unidevice/sdk/control.h"
#include "unidevice/sdk/control_target.h"
#include "unidevice/sdk/property.h"

namespace MVR {

/// The control that a property was given last, as an element "control": it may not be there yet, or
/// go later with its device or its tool. Whoever binds or clears the property ends what was kept.
class KeptControl final : public UniDevice::ControlTarget, public UniDevice::Property::Listener {
public:
    /// `property` must outlive this.
    explicit KeptControl(UniDevice::Property& property);
    KeptControl(const KeptControl&) = delete;
    KeptControl& operator=(const KeptControl&) = delete;
    ~KeptControl() override;

    /// Keeps `element` for `control`, or for the one that it names, which isn't there, if that is
    /// null.
    void keep(UniDevice::Control* control, const Tag& element);

    /// Returns the element of a control that isn't there; empty if there is none.
    [[nodiscard]] Tag getLost() const { return control_ == nullptr ? element_ : Tag(); }

    /// What has no device can't be found again, and isn't kept.
    void boundAnew(UniDevice::Control* control) override;
    void controlRemoved(UniDevice::Control* control) override;

private:
    UniDevice::Property& property_;
    UniDevice::Control* control_ = nullptr; // not owned; null if it isn't there, or no longer
    Tag element_;                           // empty if nothing is kept
};

} // namespace MVR
