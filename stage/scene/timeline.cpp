#include "stage/scene/timeline.h"

#include <cmath>

namespace Stage {

namespace {

constexpr double kFrameTolerance = 1e-5; // seconds, as the core's own

} // namespace

void Timeline::setRange(double start, double end) {
    start_ = snap(start);
    end_ = snap(end);
}

std::int64_t Timeline::frameAt(double time) const {
    return std::llround(time / getStep());
}

bool Timeline::isFrame(double time) const {
    return std::fabs(snap(time) - time) <= kFrameTolerance;
}

double Timeline::snap(double time) const {
    return static_cast<double>(frameAt(time)) * getStep();
}

} // namespace Stage
