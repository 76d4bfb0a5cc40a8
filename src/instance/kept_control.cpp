#include "instance/kept_control.h"

#include <algorithm>

namespace MVR {

KeptControl::KeptControl(UniDevice::Property& property) : property_(property) {
    property.listeners.push_back(this);
}

KeptControl::~KeptControl() {
    keep(nullptr, {});
    std::vector<Listener*>& all = property_.listeners;
    all.erase(std::remove(all.begin(), all.end(), this), all.end());
}

void KeptControl::keep(UniDevice::Control* control, const Tag& element) {
    if (control_ != nullptr)
        control_->removeTarget(this);
    control_ = control;
    if (control_ != nullptr)
        control_->targets.push_back(this);
    element_ = element;
}

void KeptControl::boundAnew(UniDevice::Control* control) {
    Tag element;
    if (control == nullptr || control->device == nullptr)
        return keep(nullptr, element);
    control->toTag(element);
    keep(control, element);
}

void KeptControl::controlRemoved(UniDevice::Control* control) {
    if (control == control_)
        control_ = nullptr;
}

} // namespace MVR
