#include "recording/frame_clock.h"

#include "core/util/to_integer.h"

#include <algorithm>
#include <cmath>

namespace MVR {

namespace {

constexpr std::int32_t kFramesPerEvent = 3;
constexpr double kSecondsPerTick = 0.001;

} // namespace

double FrameClock::getDelay(std::uint32_t now) const {
    const double due = due_ + (now - lastTick_) * kSecondsPerTick / slowness_;
    return std::isfinite(due) ? due : 0.0; // a slow motion beyond all bounds
}

void FrameClock::beginEvent(std::uint32_t now) {
    due_ = getDelay(now);
    lastTick_ = now;
    framesLeft_ = kFramesPerEvent;
}

bool FrameClock::nextFrame(double step) {
    if (step > due_) {
        if (framesLeft_ == 0)
            due_ = 0.0;
        return false;
    }
    if (framesLeft_ == 0) // what is still due stays for later events
        return false;
    --framesLeft_;
    due_ -= step;
    return true;
}

void FrameClock::noteLateness(double step) {
    if (due_ <= step * 0.5)
        return;
    ++lateFrames_;
    longestDelay_ = std::max(longestDelay_, due_ * slowness_);
}

void FrameClock::setSlowMotion(std::int32_t slowMotion) {
    slowness_ = std::exp2(static_cast<double>(slowMotion) - 1.0);
}

std::int32_t FrameClock::getSlowMotion() const {
    const double doublings = std::trunc(std::log(slowness_) / std::log(2.0) + 0.001);
    return Util::toInteger(doublings + 1.0);
}

} // namespace MVR
