#include "instance/input_property.h"

#include "core/base/border.h"
#include "unidevice/sdk/control.h"

#include <cmath>
#include <utility>

namespace MVR {

double InputProperty::getRaw() const {
    if (isHeld_)
        return good_;
    double value = 0.0;
    if (control != nullptr && control == failed_)
        return good_;
    if (control != nullptr && !Border::call([this] { return "The input of " + name; }, "getValue",
                                            [&] { value = control->getValue(); })) {
        failed_ = control;
        return good_;
    }
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
