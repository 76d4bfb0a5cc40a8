#pragma once

#include <array>
#include <string>
#include <vector>

/// One moment of a camera's movement.
struct MotionSample {
    double timeSeconds;
    std::array<double, 3> position; ///< x y z
    std::array<double, 4> rotation; ///< quaternion x y z w
};

/// In ascending order of time.
using Motion = std::vector<MotionSample>;

/// A hand-held movement of 30 seconds at 100 samples a second, the same each time. Its end leads
/// into its beginning, so that it can be repeated.
Motion makeHandheldMotion();

/// Reads a text file with a line "time x y z qx qy qz qw" for each sample, times in seconds and
/// ascending. Empty lines and lines that begin with "#" are skipped. Returns false, with
/// "path:line: what is wrong" in `error` and `out` unchanged, on failure.
[[nodiscard]] bool readMotion(const std::string& path, Motion& out, std::string& error);
