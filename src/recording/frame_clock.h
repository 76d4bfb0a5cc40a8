// The clock of a live take: how many frames are due.
#pragma once

#include <cstdint>

namespace MVR {

/// Turns the time that passes into frames of the host, at most three per event.
///
/// 1. start().
/// 2. At each timer event beginEvent(), then nextFrame() until it is false.
///
/// Time that is left over stays for later events, and for the next take.
class FrameClock {
public:
    /// All ticks are in milliseconds and wrap at 2^32.
    void start(std::uint32_t now) {
        lastTick_ = now;
        lateFrames_ = 0;
        longestDelay_ = 0.0;
    }
    /// Adds the time that has passed since the last event.
    void beginEvent(std::uint32_t now);
    /// Returns true if a frame of `step` scene seconds is due in this event, and uses up its time.
    /// After three frames, a remainder of less than a frame is dropped.
    [[nodiscard]] bool nextFrame(double step);

    /// Returns how many scene seconds were due at the last event and used up by no frame.
    [[nodiscard]] double getDue() const { return due_; }
    /// Returns how many are due at `now`.
    [[nodiscard]] double getDelay(std::uint32_t now) const;
    /// Called when the frame that is due is simulated.
    void noteLateness(double step);
    /// Returns how many frames since start() were simulated more than half a frame late.
    [[nodiscard]] std::int64_t getLateFrames() const { return lateFrames_; }
    /// Returns how late the latest of them came, in real seconds.
    [[nodiscard]] double getLongestDelay() const { return longestDelay_; }

    /// 1 is real time, each step more halves the speed. Applies from the next event on.
    void setSlowMotion(std::int32_t slowMotion);
    [[nodiscard]] std::int32_t getSlowMotion() const;
    /// The same as real seconds per scene second.
    void setSlowness(double slowness) { slowness_ = slowness; }
    [[nodiscard]] double getSlowness() const { return slowness_; }

private:
    double slowness_ = 1.0;
    double due_ = 0.0; // scene seconds that have passed and are not simulated yet
    std::uint32_t lastTick_ = 0;
    std::int32_t framesLeft_ = 0; // of this event
    std::int64_t lateFrames_ = 0;
    double longestDelay_ = 0.0;
};

} // namespace MVR
