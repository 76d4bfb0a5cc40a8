#include "instance/stored_input.h"

#include "core/contract/adaptor_interface.h"
#include "recording/values/variable_mod_undo.h"
#include "unidevice/sdk/control.h"

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <utility>

namespace MVR {

const std::shared_ptr<StoredInput::Values>& StoredInput::sharedValues() {
    if (values_ == nullptr)
        values_ = std::make_shared<Values>();
    return values_;
}

void StoredInput::begin(double time, TakeSource source, const IsInTake& isInTake,
                        AdaptorInterface& host) {
    const auto size = static_cast<std::size_t>(count());
    Values& values = getValues();
    if (values.size() < size)
        values.resize(size);
    substitutes_.resize(size);
    for (Substitute& each : substitutes_)
        each.isToldBad = false;
    for (std::int32_t i = 0; i < count(); ++i)
        (void)inputs_.at(i).wasBad();
    isLive_ = source == TakeSource::Live;
    if (isLive_) {
        host.addUndo(new CVariableModUndo<Values>(values_));
        for (Util::AVar_Linear<double>& variable : values)
            variable.eraseFrom(time);
        return;
    }
    isInTake_ = isInTake;
    play(time);
}

void StoredInput::play(double time) {
    if (!isInTake_)
        return;
    const Values& values = getValues();
    for (std::size_t i = 0; i < std::min(substitutes_.size(), values.size()); ++i) {
        Substitute& each = substitutes_[i];
        if (!each.isBound) {
            const UniDevice::Control* const own = inputs_.at(static_cast<std::int32_t>(i)).control;
            if (own != nullptr && own->device != nullptr && isInTake_(*own->device))
                continue;
            standIn(static_cast<std::int32_t>(i));
        }
        each.control->setValue(values[i].getValue(time));
    }
}

void StoredInput::standIn(std::int32_t index) {
    Substitute& substitute = substitutes_[static_cast<std::size_t>(index)];
    if (substitute.control == nullptr)
        substitute.control = std::make_unique<TemporaryControl>(index);
    substitute.control->standIn(inputs_.at(index));
    substitute.isBound = true;
}

/// Stores the raw value, before the property's mapping: a later change of the mapping affects a
/// resimulation.
std::vector<const UniDevice::Property*> StoredInput::hold(double time) {
    std::vector<const UniDevice::Property*> bad;
    Values& values = getValues();
    for (std::size_t i = 0; i < substitutes_.size(); ++i) {
        InputProperty& property = inputs_.at(static_cast<std::int32_t>(i));
        property.hold();
        if (isLive_ && i < values.size()) // the host's undo may have shortened it
            values[i].setKey(time, property.getRaw());
        if (property.wasBad() && !std::exchange(substitutes_[i].isToldBad, true))
            bad.push_back(&property);
    }
    return bad;
}

void StoredInput::release() {
    for (std::int32_t i = 0; i < count(); ++i)
        inputs_.at(i).release();
}

void StoredInput::end() {
    release();
    isInTake_ = nullptr;
    for (std::size_t i = 0; i < substitutes_.size(); ++i)
        if (std::exchange(substitutes_[i].isBound, false))
            substitutes_[i].control->giveBack(inputs_.at(static_cast<std::int32_t>(i)));
}

} // namespace MVR
