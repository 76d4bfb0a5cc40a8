#pragma once

namespace UniDevice {

class Control;

/// Whoever is bound to a control and must know when it goes.
///
/// A target stands in `Control::targets` while it is bound. Whichever of the two ends first takes
/// itself out of the other.
class ControlTarget {
public:
    /// Called by the destructor of a control for each of its targets. `control` is on its way out:
    /// compare the address, call nothing of it. Comes at any time.
    virtual void controlRemoved(Control* control) = 0;

protected:
    ~ControlTarget() = default;
};

} // namespace UniDevice
