#include "instance/input_property.h"

#include "core/base/border.h"

namespace MVR {

double InputProperty::read() const {
    double value = 0.0;
    if (control != nullptr && control == failed_)
        return good_;
    if (control != nullptr && !Border::call([this] { return "The input of " + name; }, "getValue",
                                            [&] { value = control->getValue(); }))
        failed_ = control;
    else if (std::isfinite(value))
        good_ = value;
    return good_;
}

} // namespace MVR
