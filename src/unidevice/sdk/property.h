#pragma once

#include "unidevice/sdk/control_target.h"

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
/// control may go in any order. Host thread only.
///
/// The fields and the order of the virtual operations are shared with separately built libraries.
class Property : public ControlTarget {
public:
    /// A tool-side record that caches whether the property is bound. `bound` is set by its owner
    /// and cleared by the property when its control goes.
    struct Listener {
        bool bound = false;
    };

    /// Builds properties, so that a library of tools can ask for its own kind. What it builds is
    /// made with `new`, and freed by its virtual destructor, in the library that made it.
    class Factory {
    public:
        /// A new property, the caller's to free.
        virtual Property* create(const std::string& name, std::int32_t acceptedKinds) const;
    };

    /// What `bind` returns when it was given no control.
    static constexpr std::int32_t kUnbound = 65535;

    /// `acceptedKinds` are bits of `ControlKind`.
    Property(std::string name, std::int32_t acceptedKinds);
    Property(const Property&) = delete;
    Property& operator=(const Property&) = delete;

    /// Called by a control that goes: the property is unbound and all listeners are told.
    void controlRemoved(Control* control) override;

    /// The bound control's value, mapped anew at each call: the part of its size beyond `deadzone`
    /// over 1 - `deadzone`, raised to `exponent`, with the sign of the value, times `multiplier`,
    /// plus `offset`. Not clamped. An unbound property maps 0. A `deadzone` of 1 divides by 0.
    [[nodiscard]] virtual double getValue() const;

    /// Leaves its control.
    virtual ~Property();

    /// Leaves the present control and takes `control`, which stays its device's. Null only leaves,
    /// and gives `kUnbound`. Else gives the kinds that both have in common; at 0 they don't fit,
    /// and the binding stands all the same.
    std::int32_t bind(Control* newControl);

    /// Takes from `tag` those of `multiplier`, `exponent`, `deadzone` and `offset` that it has as
    /// child elements; the others stay, as does one whose text is no number.
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
