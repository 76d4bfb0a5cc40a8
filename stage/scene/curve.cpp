#include "stage/scene/curve.h"

#include <algorithm>

namespace Stage {

namespace {

bool isEarlier(const Key& key, double time) {
    return key.time < time;
}

} // namespace

void Curve::setKey(double time, double value) {
    if (keys_.empty() || keys_.back().time < time - kSameTimeSeconds) {
        keys_.push_back({time, value});
        return;
    }
    const auto place =
        std::lower_bound(keys_.begin(), keys_.end(), time - kSameTimeSeconds, isEarlier);
    if (place->time <= time + kSameTimeSeconds)
        *place = {time, value};
    else
        keys_.insert(place, {time, value});
}

void Curve::eraseFrom(double time) {
    keys_.erase(std::lower_bound(keys_.begin(), keys_.end(), time - kSameTimeSeconds, isEarlier),
                keys_.end());
}

double Curve::evaluate(double time, double valueAtRest) const {
    if (keys_.empty())
        return valueAtRest;
    const Span span = spanAt(time);
    return span.from->value + (span.to->value - span.from->value) * span.fraction;
}

Curve::Span Curve::spanAt(double time) const {
    const auto after = std::lower_bound(keys_.begin(), keys_.end(), time, isEarlier);
    if (after == keys_.end())
        return {&keys_.back(), &keys_.back(), 0.0};
    if (after == keys_.begin() || after->time == time)
        return {&*after, &*after, 0.0};
    const Key& from = *(after - 1);
    return {&from, &*after, (time - from.time) / (after->time - from.time)};
}

} // namespace Stage
