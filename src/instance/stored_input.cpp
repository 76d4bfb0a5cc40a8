#include "instance/stored_input.h"

#include "core/contract/adaptor_interface.h"
#include "recording/values/variable_mod_undo.h"

#include <algorithm>
#include <cstddef>
#include <cstdint>

namespace MVR {

const std::shared_ptr<StoredInput::Values>& StoredInput::sharedValues() {
    if (values_ == nullptr)
        values_ = std::make_shared<Values>();
    return values_;
}

void StoredInput::begin(double time, TakeSource source, AdaptorInterface& host) {
    const auto count = static_cast<std::size_t>(properties_.count());
    Values& values = getValues();
    if (values.size() < count)
        values.resize(count);
    if (source == TakeSource::Live) {
        host.addUndo(new CVariableModUndo<Values>(values_));
        for (Util::AVar_Linear<double>& variable : values)
            variable.eraseFrom(time);
        return;
    }
    while (standIns_.size() < count)
        standIns_.push_back(
            std::make_unique<TemporaryControl>(static_cast<std::int32_t>(standIns_.size())));
    for (std::size_t i = 0; i < count; ++i)
        standIns_[i]->standIn(*properties_.property(static_cast<std::int32_t>(i)));
    isPlaying_ = true;
}

void StoredInput::step(double time) {
    if (isPlaying_)
        play(time);
    else
        store(time);
}

/// The raw value, before the property's mapping: a later change of the mapping affects a
/// resimulation.
void StoredInput::store(double time) {
    Values& values = getValues();
    const std::size_t count =
        std::min(static_cast<std::size_t>(properties_.count()), values.size());
    for (std::size_t i = 0; i < count; ++i) {
        const UniDevice::Control* const control =
            properties_.property(static_cast<std::int32_t>(i))->control;
        values[i].setKey(time, control != nullptr ? control->getValue() : 0.0);
    }
}

void StoredInput::play(double time) {
    const Values& values = getValues();
    const std::size_t count = std::min(standIns_.size(), values.size());
    for (std::size_t i = 0; i < count; ++i)
        standIns_[i]->setValue(values[i].getValue(time));
}

void StoredInput::end() {
    if (!isPlaying_)
        return;
    isPlaying_ = false;
    for (std::size_t i = 0; i < standIns_.size(); ++i)
        standIns_[i]->giveBack(*properties_.property(static_cast<std::int32_t>(i)));
}

} // namespace MVR
