#include "instance/temporary_control.h"

#include "data/sdk/tag.h"

namespace MVR {

namespace {

constexpr std::int32_t kAllKinds = 0xFFFF;

} // namespace

TemporaryControl::TemporaryControl(std::int32_t position) : Control(nullptr, kAllKinds, 0.0) {
    index = position;
    type = "Temporary control";
    description = "Temporary control";
}

TemporaryControl::~TemporaryControl() {
    keep(nullptr);
}

void TemporaryControl::standIn(UniDevice::Property& property) {
    UniDevice::Control* const own = property.control;
    property.lend(this);
    keep(own);
}

void TemporaryControl::giveBack(UniDevice::Property& property) {
    UniDevice::Control* const own = kept_;
    keep(nullptr);
    property.lend(own);
}

void TemporaryControl::toTag(Tag& out) const {
    out = Tag();
    if (kept_ != nullptr)
        kept_->toTag(out);
}

void TemporaryControl::controlRemoved(UniDevice::Control* control) {
    if (control == kept_)
        kept_ = nullptr;
}

void TemporaryControl::keep(UniDevice::Control* control) {
    if (kept_ != nullptr)
        kept_->removeTarget(this);
    kept_ = control;
    if (kept_ != nullptr)
        kept_->targets.push_back(this);
}

} // namespace MVR
