#pragma once

#include "unidevice/sdk/control_target.h"

#include <cmath>
#include <cstdint>
#include <string>
#include <vector>

namespace MVR {
class Tag;
}

namespace UniDevice {

/// One named input of a tool: a control seen through dead zone, exponent, multiplier and offset.
///
/// Owned by the tool instance's `PropertyHandler`, also when a tool asked for it. Property and
/// control may go in any order. All operations may be called as long as the property lives; but a
/// tool binds nothing itself, and in a resimulation `control` is a stand-in that plays what was
/// recorded, unless it belongs to a tool that runs too. Host thread only.
///
/// The fields and the order of the virtual operations are shared with separately built libraries.
class Property : public ControlTarget {
public:
    /// Somebody's record of how the property is bound. Its owner enters it into `listeners`, sets
    /// `bound`, and removes it before either is destroyed; the property clears `bound` when its
    /// control is destroyed.
    class Listener {
    public:
        virtual ~Listener() = default;
        /// Called at the end of each bind(), with its control or null. May call nothing that
        /// changes the binding or `listeners`.
        virtual void boundAnew(Control* control);

        bool bound = false;
    };

    /// Creates properties, so that a library of tools can ask for its own kind. They are made with
    /// `new` and freed by their virtual destructor, in the library that made them.
    class Factory {
    public:
        /// Returns a new property, which the caller owns; by default a plain one.
        virtual Property* create(const std::string& name, std::int32_t acceptedKinds) const;

    protected:
        ~Factory() = default;
    };
    class PlainFactory final : public Factory {};

    /// Returned by `bind` if it got no control.
    static constexpr std::int32_t kUnbound = 65535;

    /// `acceptedKinds` are bits of `ControlKind`.
    Property(std::string name, std::int32_t acceptedKinds);
    Property(const Property&) = delete;
    Property& operator=(const Property&) = delete;

    /// Called by a control that is being destroyed. Unbinds the property and tells all listeners.
    void controlRemoved(Control* control) override;

    /// Returns the bound control's value, mapped anew at each call: the part of its size beyond
    /// `deadzone`, divided by 1 - `deadzone`, raised to `exponent`, with the sign of the value,
    /// times `multiplier`, plus `offset`. Not clamped. An unbound property maps 0. A `deadzone` of
    /// 1 divides by 0. While a frame of a take is recorded, an input of a tool maps the value that
    /// its control had when the frame began, and never one that isn't finite.
    [[nodiscard]] virtual double getValue() const;

    /// Leaves its control.
    virtual ~Property();

    /// Returns what the mapping makes of `raw`, a value of a control.
    [[nodiscard]] double map(double raw) const {
        const double s = raw < 0.0 ? -1.0 : 1.0;
        double y = std::abs(raw) - deadzone;
        if (y < 0.0)
            y = 0.0;
        y = y / (1.0 - deadzone);
        y = std::pow(y, exponent);
        return y * s * multiplier + offset;
    }

    /// Leaves the present control and joins `newControl`, which stays its device's. Null only
    /// leaves and returns `kUnbound`. Otherwise returns the kinds that both have in common; if that
    /// is 0 they don't match, but the binding is made all the same. Tells all listeners.
    std::int32_t bind(Control* newControl);
    /// As bind(), but for what stands in for the user's own control, and for the return of that: no
    /// listener is told.
    void lend(Control* standIn);

    /// Reads `multiplier`, `exponent`, `deadzone` and `offset` from the child elements of `tag`.
    /// One that is missing, or whose text is no number, stays unchanged.
    void readSettings(const MVR::Tag& tag);

    /// Makes `out` a `property` element with the name and the four parameters: six digits of each,
    /// or, if `isExact`, as many as it takes to read the same bits.
    void toTag(MVR::Tag& out, bool isExact = false) const;

    std::vector<Listener*> listeners; ///< not owned
    Control* control = nullptr;       ///< the bound control, or null; not owned
    std::string name;                 ///< the property's name within its tool instance
    std::int32_t acceptedKinds;       ///< bits of `ControlKind`
    double multiplier = 1.0;
    double exponent = 1.0;
    double deadzone = 0.1; ///< 0 is allowed, 1 is not
    double offset = 0.0;
};

} // namespace UniDevice
