#include "instance/kept_control.h"

namespace MVR {

void KeptControl::keep(UniDevice::Control* control, const Tag& element) {
    clear();
    element_ = element;
    control_ = control;
    if (control_ != nullptr)
        control_->targets.push_back(this);
}

void KeptControl::clear() {
    if (control_ != nullptr)
        control_->removeTarget(this);
    control_ = nullptr;
    element_ = Tag();
}

void KeptControl::controlRemoved(UniDevice::Control* control) {
    if (control == control_)
        control_ = nullptr;
}

} // namespace MVR
