#pragma once

#include <cstdint>

namespace Stage {

/// The host's present time, the range of the animation and the frame rate.
class Timeline {
public:
    static constexpr double kDefaultRate = 25.0;

    [[nodiscard]] double getTime() const { return time_; }
    void setTime(double time) { time_ = time; }

    [[nodiscard]] double getStart() const { return start_; }
    [[nodiscard]] double getEnd() const { return end_; }
    /// Moves both to the nearest frame, so that the last frame of a take is in the range whatever
    /// the rounding.
    void setRange(double start, double end);

    [[nodiscard]] double getRate() const { return rate_; }
    /// Frames per second, above 0. Set it before the range.
    void setRate(double rate) { rate_ = rate; }
    [[nodiscard]] double getStep() const { return 1.0 / rate_; } ///< seconds per frame
    /// Returns true if `time` is that of a frame, within a hundredth of a millisecond.
    [[nodiscard]] bool isFrame(double time) const;

    /// The nearest frame, as a number counted from time 0.
    [[nodiscard]] std::int64_t frameAt(double time) const;
    /// The time of the nearest frame.
    [[nodiscard]] double snap(double time) const;

private:
    double time_ = 0.0;
    double start_ = 0.0;
    double end_ = 10.0;
    double rate_ = kDefaultRate;
};

} // namespace Stage
