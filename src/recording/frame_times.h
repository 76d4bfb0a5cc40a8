// The times of the frames of a resimulation.
#pragma once

namespace MVR {

/// The times of the frames after a start, each from its number, so that no error adds up. If the
/// start is on the host's grid of frames, they are those of the live take, to the bit; otherwise
/// they count from the start.
class FrameTimes {
public:
    /// `frameRate` is above 0, in frames per second; `frameStep` is the host's own, in seconds.
    FrameTimes(double start, double frameRate, double frameStep);

    /// Returns the number of the first frame after the start.
    [[nodiscard]] double getFirst() const { return first_; }
    [[nodiscard]] double getTime(double number) const {
        return isOnGrid_ ? number * step_ : start_ + number / rate_;
    }

private:
    const double start_;
    const double rate_;
    const double step_;
    bool isOnGrid_ = false;
    double first_ = 1.0;
};

} // namespace MVR
