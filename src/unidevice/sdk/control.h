#pragma once

#include <cstdint>
#include <string>
#include <vector>

namespace MVR {
class Tag;
}

namespace UniDevice {

class ControlTarget;
class Device;

/// Bits of a kind mask: what a control provides, or what a property accepts. Write them with their
/// namespace: the C library has a function `finite` of its own.
enum ControlKind : std::int32_t {
    binary = 1,   ///< two states, 0 or 1: a key or a button
    trinary = 2,  ///< three states, -1, 0 or 1
    finite = 4,   ///< a value over a bounded range
    infinite = 8, ///< an unbounded value
};

/// One live input value: a key, an axis, an argument of a network message.
///
/// A control belongs to its device, which makes it, writes its values and frees it by `destroy()`.
/// It may be freed while something is bound to it. What reads may be called as long as the control
/// lives; the device alone writes values, in `update` or as its input comes in between, and in
/// `resetControls`. Host thread only.
///
/// The fields and the order of the virtual operations are shared with separately built libraries.
class Control {
public:
    /// `device` is the owner, or null for a control without one; `threshold` is the least change
    /// that counts as a move in a detection. Values start at 0.
    Control(Device* device, std::int32_t kindMask, double threshold);

    /// Keeps all fields but `targets`, which starts empty.
    Control(const Control& other);
    Control& operator=(const Control&) = delete;

    /// Makes `out` a `control` element that names this control, so that a saved binding finds it.
    virtual void toTag(MVR::Tag& out) const;

    /// Returns true if `tag` names this control: device, `type` and `index` match. A missing
    /// `index` matches any; the description is ignored.
    [[nodiscard]] virtual bool matches(const MVR::Tag& tag) const;

    /// Returns the value that bound properties map, `value` by default. Called at each read.
    [[nodiscard]] virtual double getValue() const;

    /// Frees the control in the library that made it.
    virtual void destroy();

    /// Tells each target that the control is being destroyed.
    virtual ~Control();

    /// Stores a new value and keeps the one it replaces in `previousValue`; counts it in
    /// `arrivals`. Not virtual.
    void setValue(double newValue);

    /// Sets both values to 0.
    void resetValues();

    /// Returns the size of the last change, never negative.
    [[nodiscard]] double change() const;

    /// Removes every entry of `target` from `targets`, if there is one.
    void removeTarget(const ControlTarget* target);

    /// Returns the candidate with the largest change, the first of equals, or null if there is
    /// none.
    [[nodiscard]] static Control* mostMoved(const std::vector<Control*>& candidates);

    std::vector<ControlTarget*> targets; ///< who is bound to this control; not owned
    std::int32_t kindMask;               ///< bits of `ControlKind`
    double previousValue = 0.0;          ///< value before the last change
    double value = 0.0;                  ///< current value
    double threshold;                    ///< least change that counts as a move in a detection
    std::string type;                    ///< identifier within the device, stored in files
    std::int32_t index = 0;              ///< second identifier within the device
    std::string description;             ///< text for the user
    Device* device;                      ///< the owner; null for a control without a device
    /// How many values it was given; wraps. A driver that writes `value` itself counts them here,
    /// so that a user can be told of a control that sends nothing.
    std::uint32_t arrivals = 0;
};

} // namespace UniDevice
