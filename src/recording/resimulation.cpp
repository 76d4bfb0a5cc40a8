#include "recording/resimulation.h"

#include "core/contract/adaptor_interface.h"
#include "platform/sdk/clock.h"
#include "recording/frame_clock.h"
#include "recording/take.h"

#include <algorithm>
#include <cstdint>

namespace MVR {

namespace {

constexpr std::uint32_t kSliceMs = 500;
constexpr double kRangeTolerance = 0.00001; // keeps rounding from adding or losing the last frame

} // namespace

Resimulation::Resimulation(Take& take, FrameClock& clock, AdaptorInterface& host)
    : take_(take), clock_(clock), host_(host), savedSlowness_(clock.getSlowness()),
      frames_(take.getStart(), host.getFrameRate(), host.getFrameStep()),
      frame_(frames_.getFirst()) {
    take_.setTime(frames_.getTime(frame_));
    clock_.setSlowness(1.0);
}

bool Resimulation::runSlice() {
    const std::uint32_t begin = Platform::tickMs();
    while (take_.getState() == Take::State::Running &&
           take_.getEnd() + kRangeTolerance > take_.getTime()) {
        const double done = take_.getTime() - take_.getStart();
        const double span = take_.getEnd() - take_.getStart();
        progress_ = span > 0.0 ? static_cast<float>(std::clamp(done / span, 0.0, 1.0)) : 1.0F;
        if (Platform::tickMs() - begin > kSliceMs)
            return true;
        take_.simulate();
        const double next = frames_.getTime(++frame_);
        if (!(next > take_.getTime())) // a time so large that a frame doesn't count any more
            break;
        take_.setTime(next);
    }
    progress_ = 1.0F;
    return false;
}

void Resimulation::finish() {
    if (!take_.isGoingOn())
        return;
    take_.restoreLog();
    take_.finishTools(1.0 / host_.getFrameRate() + take_.getEnd());
    clock_.setSlowness(savedSlowness_);
    take_.deactivateDevices();
    take_.close();
}

} // namespace MVR
