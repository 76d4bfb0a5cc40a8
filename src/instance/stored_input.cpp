#include "instance/stored_input.h"

#include "core/base/border.h"
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
    held_.resize(size);
    for (std::size_t i = 0; i < size; ++i) {
        held_[i].property = &inputs_.at(static_cast<std::int32_t>(i));
        held_[i].property->follow(&isHeld_);
        held_[i].isToldBad = false;
    }
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
    for (std::size_t i = 0; i < std::min(held_.size(), values.size()); ++i) {
        Held& each = held_[i];
        if (!each.isStoodFor) {
            const UniDevice::Control* const own = each.property->control;
            if (own != nullptr && own->device != nullptr && isInTake_(*own->device))
                continue;
            standIn(i);
        }
        each.substitute->setValue(values[i].getValue(time));
    }
}

void StoredInput::standIn(std::size_t index) {
    Held& each = held_[index];
    if (each.substitute == nullptr)
        each.substitute = std::make_unique<TemporaryControl>(static_cast<std::int32_t>(index));
    each.substitute->standIn(*each.property);
    each.isStoodFor = true;
}

/// Stores the raw value, before the property's mapping: a later change of the mapping affects a
/// resimulation.
std::vector<const UniDevice::Property*> StoredInput::hold(double time) {
    std::vector<const UniDevice::Property*> bad;
    Values& values = getValues();
    // The host's undo may have shortened them.
    const std::size_t stored = isLive_ ? values.size() : 0;
    std::size_t i = 0;
    const auto holdRest = [&] {
        for (; i < held_.size(); ++i) {
            if (!held_[i].property->hold() && !std::exchange(held_[i].isToldBad, true))
                bad.push_back(held_[i].property);
            if (i < stored)
                values[i].setKey(time, held_[i].property->getHeld());
        }
    };
    const auto who = [&] { return "The input of " + held_[i].property->name; };
    while (!Border::call(who, "getValue", holdRest))
        held_[i++].property->skipControl(); // and go on with the next
    isHeld_ = true;
    return bad;
}

void StoredInput::end() {
    release();
    isInTake_ = nullptr;
    for (Held& each : held_) {
        each.property->follow(nullptr);
        if (std::exchange(each.isStoodFor, false))
            each.substitute->giveBack(*each.property);
    }
}

} // namespace MVR
