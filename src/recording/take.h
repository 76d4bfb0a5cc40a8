// A take: the heart of the product.
#pragma once

#include "recording/frame_clock.h"
#include "recording/running_tools.h"
#include "recording/silent_inputs.h"
#include "recording/values/take_source.h"

#include <cstdint>
#include <unordered_set>
#include <vector>

namespace UniDevice {
class Device;
class DeviceHandler;
} // namespace UniDevice

namespace MVR {

class AdaptorInterface;
class CoreServices;
class PluginInstance;

/// One take of the artist, or one simulated again: the checked tools, run frame by frame from the
/// live devices or from what an earlier take stored.
///
/// 1. With the host's undo step open, begin() tells the host and prepares the tools.
/// 2. setTime() and simulate() for each frame.
/// 3. finishTools(), deactivateDevices(), and last close(), which closes the undo step.
///
/// Host and tools may end the take from inside any operation, and begin another one: a caller holds
/// the take until the operation returns, and asks isRecording() before going on. Scene times are
/// seconds. Host thread only.
class Take {
public:
    enum class State : std::uint8_t {
        Running,
        StopWanted, ///< ends after the present frame
        Finishing,  ///< the tools are being finished
        Closing,    ///< the host learns of the end
        Closed,     ///< the undo step is closed
    };

    /// Its time is `start`. `services` outlive it.
    Take(CoreServices& services, TakeSource source, double start, double end);
    Take(const Take&) = delete;
    Take& operator=(const Take&) = delete;

    [[nodiscard]] TakeSource getSource() const { return source_; }
    [[nodiscard]] State getState() const { return state_; }
    /// Returns true until close().
    [[nodiscard]] bool isRecording() const { return state_ < State::Closing; }
    /// Returns true while frames may come and nobody is ending the take.
    [[nodiscard]] bool isGoingOn() const { return state_ < State::Finishing; }

    [[nodiscard]] double getStart() const { return start_; }
    [[nodiscard]] double getEnd() const { return end_; }
    void setEnd(double end) { end_ = end; }
    /// Returns the time of the present frame; before the start during a countdown.
    [[nodiscard]] double getTime() const { return time_; }
    void setTime(double time) { time_ = time; }

    /// Sorts the tools, tells the host, activates the devices and prepares the tools.
    void begin();
    /// Keeps the log down to errors until restoreLog(), so that no frame writes to it.
    void quietLog();
    void restoreLog() const;
    /// Simulates one frame: puts stored input in place, polls the devices, those of the tools last,
    /// holds each tool's input, and steps each tool.
    void simulate();
    /// Makes the take end after the present frame.
    void requestStop();
    /// Finishes the tools at `time` and forgets them.
    void finishTools(double time);
    void deactivateDevices();
    /// Tells what the take lacks of what was performed. While the tools are in it.
    void noteWhatIsMissing(const FrameClock& clock);
    /// Tells the host and closes its undo step.
    void close();

    /// Removes a tool, and finishes it if `finish`; does nothing for one that isn't there.
    void drop(PluginInstance* tool, bool finish);
    /// Returns the tools in the order in which they run.
    [[nodiscard]] std::vector<PluginInstance*> getTools() const { return tools_.list(); }

private:
    [[nodiscard]] AdaptorInterface& host() const;

    CoreServices& services_;
    const TakeSource source_;
    State state_ = State::Running;
    RunningTools tools_;
    std::unordered_set<const UniDevice::Device*> toolDevices_; // of those
    SilentInputs silentInputs_;
    std::int64_t frames_ = 0;                     // simulated so far
    UniDevice::DeviceHandler* devices_ = nullptr; // null unless they are active for this take
    double start_;
    double end_;
    double time_;
    std::int32_t logThreshold_; // outside the take
};

} // namespace MVR
