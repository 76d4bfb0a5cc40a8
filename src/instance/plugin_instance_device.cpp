#include "instance/plugin_instance.h"

#include "plugins/contract/extension_ids.h"
#include "plugins/instance_reference.h"

namespace MVR {

namespace {

constexpr double kVirtualThreshold = 0.1;

} // namespace

std::int32_t PluginInstance::controlCount() const {
    return static_cast<std::int32_t>(virtualControls_.size());
}

UniDevice::Control* PluginInstance::control(std::int32_t index) {
    if (index < 0 || index >= controlCount())
        return nullptr;
    return virtualControls_[static_cast<std::size_t>(index)].get();
}

bool PluginInstance::update(std::int32_t) {
    if (virtualControls_.empty())
        return true;
    const InstanceReference::Watch self(reference_);
    for (std::size_t i = 0; code_ != nullptr && i < virtualControls_.size(); ++i) {
        UniDevice::Control* const control = virtualControls_[i].get();
        code_->extend(ToolExtension::kVirtualControl, reinterpret_cast<std::intptr_t>(control));
        if (self.get() == nullptr) // the tool has removed itself
            break;
    }
    return true;
}

UniDevice::Control* PluginInstance::detectControl(const std::vector<UniDevice::Control*>*, void*) {
    return nullptr;
}

UniDevice::Control* PluginInstance::addVirtualControl(const VirtualControlRecord& record) {
    if (!isEnabled())
        setEnabled(true);
    virtualControls_.emplace_back(new VirtualControl(this, record.kindMask, kVirtualThreshold));
    VirtualControl& control = *virtualControls_.back();
    control.type = record.name;
    control.index = record.index;
    control.description = record.name;
    return &control;
}

} // namespace MVR
