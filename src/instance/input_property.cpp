#include "instance/input_property.h"

#include "unidevice/sdk/control.h"

#include <cmath>
#include <utility>

namespace MVR {

double InputProperty::getRaw() const {
    if (isHeld_)
        return good_;
    const double value = control != nullptr ? control->getValue() : 0.0;
    if (std::isfinite(value))
        good_ = value;
    else
        wasBad_ = true;
    return good_;
}

void InputProperty::hold() {
    isHeld_ = false;
    (void)getRaw();
    isHeld_ = true;
}

bool InputProperty::wasBad() {
    return std::exchange(wasBad_, false);
}

} // namespace MVR
