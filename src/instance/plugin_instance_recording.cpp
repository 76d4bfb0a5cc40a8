#include "instance/plugin_instance.h"

#include "core/contract/adaptor_interface.h"
#include "core/services/core_services.h"
#include "plugins/instance_reference.h"
#include "recording/values/variable_mod_undo.h"

#include <algorithm>
#include <utility>

namespace MVR {

const std::shared_ptr<PluginInstance::RecordedValues>& PluginInstance::sharedRecordedValues() {
    if (recordedValues_ == nullptr)
        recordedValues_ = std::make_shared<RecordedValues>();
    return recordedValues_;
}

void PluginInstance::prepareRecording(double time) {
    const InstanceReference::Watch self(reference_);
    isPrepared_ = true;
    code_->startRecording(time);
    // The tool may have left the tree, or ended the take: then nothing of it is for this one.
    if (self.get() == nullptr || !isInTree() || !services_.isRecording())
        return;
    for (SceneNode* node : adaptor()->getNodes(this))
        node->startRecording(time);
    const auto count = static_cast<std::size_t>(properties_.count());
    RecordedValues& recorded = getRecordedValues();
    if (recorded.size() < count)
        recorded.resize(count);
    if (!services_.isResimulating()) {
        addUndo(new CVariableModUndo<RecordedValues>(recordedValues_));
        for (Util::AVar_Linear<double>& variable : recorded)
            variable.eraseFrom(time);
        return;
    }
    while (temporaryControls_.size() < count)
        temporaryControls_.push_back(std::make_unique<TemporaryControl>(
            static_cast<std::int32_t>(temporaryControls_.size())));
    for (std::size_t i = 0; i < count; ++i)
        temporaryControls_[i]->takeOver(*properties_.property(static_cast<std::int32_t>(i)));
    controlsReplaced_ = true;
}

void PluginInstance::step(double time) {
    RecordedValues& recorded = getRecordedValues();
    if (controlsReplaced_) {
        const std::size_t count = std::min(temporaryControls_.size(), recorded.size());
        for (std::size_t i = 0; i < count; ++i)
            temporaryControls_[i]->setValue(recorded[i].getValue(time));
    } else {
        // The raw value, before the property's mapping: a later change of that acts on a
        // resimulation.
        const std::size_t count =
            std::min(static_cast<std::size_t>(properties_.count()), recorded.size());
        for (std::size_t i = 0; i < count; ++i) {
            const UniDevice::Control* const control =
                properties_.property(static_cast<std::int32_t>(i))->control;
            recorded[i].setKey(time, control != nullptr ? control->getValue() : 0.0);
        }
    }
    code_->record(time);
}

void PluginInstance::finishRecording(double time) {
    if (!std::exchange(isPrepared_, false)) // never started, or being finished
        return;
    const InstanceReference::Watch self(reference_);
    code_->finishRecording(time);
    if (self.get() == nullptr || !controlsReplaced_) // in this order: the tool may be gone
        return;
    controlsReplaced_ = false;
    for (std::size_t i = 0; i < temporaryControls_.size(); ++i)
        temporaryControls_[i]->giveBack(*properties_.property(static_cast<std::int32_t>(i)));
}

} // namespace MVR
