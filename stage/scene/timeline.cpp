#include "stage/scene/timeline.h"

#include <cmath>

namespace Stage {

void Timeline::setRange(double start, double end) {
    start_ = snap(start);
    end_ = snap(end);
}

std::int64_t Timeline::frameAt(double time) const {
    return std::llround(time / getStep());
}

double Timeline::snap(double time) const {
    return static_cast<double>(frameAt(time)) * getStep();
}

} // namespace Stage
