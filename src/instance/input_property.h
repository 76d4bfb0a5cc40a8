// An input of a placed tool.
#pragma once

#include "data/kept_elements.h"
#include "instance/kept_control.h"
#include "unidevice/sdk/property.h"

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

    [[nodiscard]] double getValue() const override { return map(getRaw()); }
    /// Returns the value before the mapping: that of the control, or 0, or what is held.
    [[nodiscard]] double getRaw() const;

    /// Holds the present value until release().
    void hold();
    void release() { isHeld_ = false; }

    /// Returns true if the control had a value that isn't finite since the last call.
    [[nodiscard]] bool wasBad();

    /// The binding, for the time when its control is gone.
    [[nodiscard]] KeptControl& getKeptControl() { return keptControl_; }
    /// Elements of the property's own in a profile that nothing here knows.
    [[nodiscard]] KeptElements& getKeptElements() { return keptElements_; }

private:
    mutable double good_ = 0.0; // the last finite value, and the one that is held
    mutable bool wasBad_ = false;
    mutable const UniDevice::Control* failed_ = nullptr; // threw when it was read; compared only
    bool isHeld_ = false;
    KeptElements keptElements_;
    KeptControl keptControl_{*this};
};

} // namespace MVR
