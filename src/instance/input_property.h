// An input of a placed tool.
#pragma once

#include "data/kept_elements.h"
#include "instance/kept_control.h"
#include "unidevice/sdk/control.h"
#include "unidevice/sdk/property.h"

#include <cmath>
#include <cstdint>
#include <string>

namespace MVR {

/// A property whose value stays the same throughout a frame, whoever writes to its control
/// meanwhile. A value that isn't finite is never seen: the last good one stands for it, and for
/// what a control would say that threw when it was read.
class InputProperty final : public UniDevice::Property {
public:
    /// Makes properties of this kind only.
    class Maker final : public Factory {
    public:
        UniDevice::Property* create(const std::string& name,
                                    std::int32_t acceptedKinds) const override {
            return new InputProperty(name, acceptedKinds);
        }
    };

    using Property::Property;

    [[nodiscard]] double getValue() const override { return map(*isHeld_ ? good_ : read()); }

    /// As long as `isHeld` is true, the value stays that of the last hold(). Null: it isn't held.
    void follow(const bool* isHeld) { isHeld_ = isHeld != nullptr ? isHeld : &kNever; }
    /// Takes the value before the mapping, that of the control, or 0 without one. Returns false if
    /// it isn't finite: then the last good one stays. Throws what the control throws; skipControl()
    /// comes next.
    bool hold();
    /// Returns the value that hold() took.
    [[nodiscard]] double getHeld() const { return good_; }
    /// The present control threw: it isn't read any more.
    void skipControl() { failed_ = control; }

    /// The binding, for the time when its control is gone.
    [[nodiscard]] KeptControl& getKeptControl() { return keptControl_; }
    /// Elements of the property's own in a profile that nothing here knows.
    [[nodiscard]] KeptElements& getKeptElements() { return keptElements_; }

private:
    static constexpr bool kNever = false;

    [[nodiscard]] double read() const;

    mutable double good_ = 0.0;                          // the last finite value
    mutable const UniDevice::Control* failed_ = nullptr; // threw when it was read; compared only
    const bool* isHeld_ = &kNever;                       // not owned
    KeptElements keptElements_;
    KeptControl keptControl_{*this};
};

inline bool InputProperty::hold() {
    if (control == nullptr) {
        good_ = 0.0;
        return true;
    }
    if (control == failed_)
        return true;
    const double value = control->getValue();
    if (!std::isfinite(value))
        return false;
    good_ = value;
    return true;
}

} // namespace MVR
