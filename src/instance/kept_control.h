// The binding of a property, for the time when its control is gone.
#pragma once

#include "data/sdk/tag.h"
#include "unidevice/sdk/control.h"
#include "unidevice/sdk/control_target.h"

namespace MVR {

/// The control that a property was given last, as an element "control": it may not be there yet, or
/// go later with its device or its tool.
class KeptControl final : public UniDevice::ControlTarget {
public:
    KeptControl() = default;
    KeptControl(const KeptControl&) = delete;
    KeptControl& operator=(const KeptControl&) = delete;
    ~KeptControl() { clear(); }

    /// `control` is what `element` names, or null if it isn't there.
    void keep(UniDevice::Control* control, const Tag& element);
    void clear();

    /// Empty if nothing is kept.
    [[nodiscard]] const Tag& getElement() const { return element_; }
    /// Null if it isn't there, or no longer.
    [[nodiscard]] const UniDevice::Control* getControl() const { return control_; }

    void controlRemoved(UniDevice::Control* control) override;

private:
    UniDevice::Control* control_ = nullptr; // not owned
    Tag element_;
};

} // namespace MVR
