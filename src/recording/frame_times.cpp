#include "recording/frame_times.h"

#include <cmath>

namespace MVR {

namespace {

constexpr double kGridTolerance = 0.00001; // seconds: times that a user typed or a file rounded

} // namespace

FrameTimes::FrameTimes(double start, double frameRate, double frameStep)
    : start_(start), rate_(frameRate), step_(frameStep) {
    const double nearest = std::floor(start / step_ + 0.5);
    isOnGrid_ = step_ > 0.0 && std::abs(nearest * step_ - start) <= kGridTolerance;
    if (isOnGrid_)
        first_ = nearest * step_ > start ? nearest : nearest + 1.0;
}

} // namespace MVR
