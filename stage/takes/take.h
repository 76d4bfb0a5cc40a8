#pragma once

#include <cstdint>
#include <functional>
#include <optional>
#include <string>
#include <vector>

namespace Stage {

class Session;
class StageNode;

/// The options of a take.
struct TakePlan {
    std::int32_t countdownSeconds = 3;
    std::int32_t slowMotion = 1; ///< 1 is real time, each further step halves the speed; at most 10
    bool autoExpand = true;      ///< the range grows, and the take goes on until it is stopped
    /// Called at the first key of each frame, while the devices hold the values of the frame.
    std::function<void(double time)> onFrame;
};

/// The measurements of a take.
struct TakeFigures {
    std::int64_t frames = 0;         ///< frames in which keys were written
    std::int64_t events = 0;         ///< calls of the core that ran frames
    std::int64_t lateEvents = 0;     ///< those that ran more than a frame step after they were due
    std::int64_t sharedFrames = 0;   ///< frames that ran in one event with another
    std::vector<double> latenciesMs; ///< from sending a packet to its key
    bool isCutShort = false;         ///< stopped by the user before it ended by itself
    double endTime = 0.0;            ///< of the last frame
};

/// Returns the value that a share `share` (0 to 1) of the values doesn't exceed; 0 for no values.
double quantile(std::vector<double> values, double share);

/// Runs one take from the host's time on, until it ends by itself or the user asks to stop, and
/// keeps it. `probe` is the node whose x is the moment at which a packet was sent, in seconds of
/// the machine's steady clock, or null. Calls `progress` after each event with the scene time.
/// Returns nothing, with the reason in `error`, if the core can't start.
using ProgressCall = std::function<void(double time, const TakeFigures& figures)>;
std::optional<TakeFigures> runTake(Session& session, const TakePlan& plan, const StageNode* probe,
                                   const ProgressCall& progress, std::string& error);

} // namespace Stage
