#pragma once

namespace UniDevice {

class Control;

/// An object that is bound to a control and must know when the control is destroyed.
///
/// A target is in `Control::targets` while it is bound. Whichever of the two is destroyed first
/// removes itself from the other.
class ControlTarget {
public:
    /// Called by the destructor of a control for each of its targets. `control` is on its way out:
    /// compare the address, call nothing of it. Comes at any time.
    virtual void controlRemoved(Control* control) = 0;

protected:
    ~ControlTarget() = default;
};

} // namespace UniDevice
