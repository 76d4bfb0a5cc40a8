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

/// In the order of the file; no time is lower than the one before.
using Motion = std::vector<MotionSample>;

/// What in a file isn't as an even stream would be.
struct MotionNotes {
    long long equalTimes = 0; ///< sent together with the sample before
    long long fallingTimes =
        0;              ///< the same; after a fall of more than a second the clock began anew
    long long gaps = 0; ///< steps of more than five times the median step
    double longestGapSeconds = 0.0;
    long long dropouts = 0; ///< samples without a pose, which are left out

    /// Returns one line for the user, or "" if there is nothing to tell.
    [[nodiscard]] std::string toText() const;
};

/// A hand-held movement of 30 seconds at 100 samples a second, the same each time. Its end leads
/// into its beginning, so that it can be repeated.
Motion makeHandheldMotion();

/// Reads a text file with a line "time x y z qx qy qz qw" for each sample, times in seconds. Empty
/// lines and lines that begin with "#" are skipped. What a tracker does in a real session is
/// accepted and counted in `notes`: equal and falling times, gaps, and samples whose pose is
/// lost (a number that isn't finite, or a quaternion of four zeros). Returns false, with
/// "path:line: what is wrong" in `error` and the others unchanged, on failure.
[[nodiscard]] bool readMotion(const std::string& path, Motion& out, MotionNotes& notes,
                              std::string& error);
