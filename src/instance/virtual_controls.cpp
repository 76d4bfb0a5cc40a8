#include "instance/virtual_controls.h"

#include <cstddef>

namespace MVR {

namespace {

constexpr double kThreshold = 0.1;

} // namespace

UniDevice::Control* VirtualControls::add(UniDevice::Device& owner,
                                         const CInterface::VirtualControlRecord& record) {
    VirtualControl& control =
        *controls_.emplace_back(new VirtualControl(&owner, record.kindMask, kThreshold));
    control.type = record.name;
    control.index = record.index;
    control.description = record.name;
    return &control;
}

UniDevice::Control* VirtualControls::at(std::int32_t index) const {
    if (index < 0 || index >= count())
        return nullptr;
    return controls_[static_cast<std::size_t>(index)].get();
}

} // namespace MVR
