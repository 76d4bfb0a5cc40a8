// Runs a take from its stored input, as fast as the machine allows.
#pragma once

#include "recording/frame_times.h"

namespace MVR {

class AdaptorInterface;
class FrameClock;
class Take;

/// Simulates a take again, in slices, so that a message loop stays alive between them.
///
/// 1. Construct it for a take of TakeSource::Stored, which then begins.
/// 2. runSlice() until nothing is left to do, or the user stops it.
/// 3. finish().
class Resimulation {
public:
    /// All outlive it. The slow motion of `clock` is suspended until finish().
    Resimulation(Take& take, FrameClock& clock, AdaptorInterface& host);

    /// Returns the share that is done, 0 to 1.
    [[nodiscard]] float getProgress() const { return progress_; }
    /// Simulates for up to half a second. Returns false when nothing is left to do.
    [[nodiscard]] bool runSlice();
    /// Ends the take; the frames done so far stay. Does nothing if it is being ended.
    void finish();

private:
    Take& take_;
    FrameClock& clock_;
    AdaptorInterface& host_;
    const double savedSlowness_;
    const FrameTimes frames_;
    double frame_;
    float progress_ = 0.0F;
};

} // namespace MVR
