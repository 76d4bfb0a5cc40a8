// Starts and ends takes and resimulations.
#pragma once

#include "core/services/core_sub_system.h"
#include "core/services/timer_manager.h"
#include "platform/windows.h"
#include "recording/frame_clock.h"
#include "recording/take.h"

#include <cstdint>
#include <memory>
#include <vector>

namespace MVR {

class AdaptorInterface;
class CoreImplementation;
class PluginInstance;

/// Drives one take at a time, frame by frame: a live one against the clock; one of stored input as
/// fast as the machine allows.
///
/// A live take:
/// 1. startRecording() opens the host's undo step, starts the take and the frame timer.
/// 2. onTimer() counts down, then simulates each frame of the host's grid that has passed, at most
///    three per event; frames still due come with later events.
/// 3. stopRecording() ends the take and closes the undo step.
///
/// A resimulation is one call of resimulate(), which runs a modal dialog until the end.
///
/// Scene times are seconds. Everything runs on the host's thread. Tools may stop the take, be
/// deleted and run the message loop from inside their own operations.
class RecordManager : public CoreSubSystem, public Util::TimerManager {
public:
    static constexpr std::int32_t kFrameTimer = 123;
    /// A resimulation of more frames is refused: a year at 60 frames a second.
    static constexpr double kMostFrames = 2e9;

    RecordManager(CoreImplementation* core, CoreServices* services);
    /// Stops a take that still runs, so that the host's undo step is closed. Not allowed during a
    /// resimulation, whose dialog is on the stack.
    ~RecordManager() override;

    /// Returns 0, or the code of "ALREADYRECORDING" while a take or a resimulation runs or is being
    /// ended.
    [[nodiscard]] std::int32_t startRecording();
    /// Ends a take, or makes a resimulation end after its present frame. Does nothing if neither
    /// runs. Always returns 0.
    std::int32_t stopRecording();
    /// Returns true during a take or a resimulation.
    [[nodiscard]] bool isRecording() const { return take_ != nullptr && take_->isRecording(); }
    [[nodiscard]] bool isResimulating() const {
        return isRecording() && take_->getSource() == TakeSource::Stored;
    }

    /// 1 is real time, each step more halves the speed. Applies from the next timer event on.
    void setSlowMotion(std::int32_t slowMotion) { clock_.setSlowMotion(slowMotion); }
    [[nodiscard]] std::int32_t getSlowMotion() const { return clock_.getSlowMotion(); }

    /// Simulates the frames after `start` up to `end` again. Returns when all are done or the user
    /// stopped it; the frames done so far stay. Returns 0, or the code of "ALREADYRECORDING", or of
    /// "RESIMULATE_BADRANGE" for a span that isn't a number or has more than `kMostFrames` frames.
    [[nodiscard]] std::int32_t resimulate(double start, double end);

    /// Handles a key that was kept from the host during a take: Space and Escape stop it, Ctrl+Z
    /// undoes it and starts again.
    void handleKey(std::int32_t virtualKey, bool pressed, bool ctrl, bool alt, bool shift);

    /// Returns how many seconds of scene time are due in a live take and not simulated yet.
    [[nodiscard]] double getDelay() const;

    /// Returns the tools of the running take or resimulation, in the order in which they run.
    [[nodiscard]] std::vector<PluginInstance*> getRecordedInstances() const;
    /// Removes a tool from the running take or resimulation, and finishes it if `finish`. Called
    /// when the tool is deleted. Does nothing for one that doesn't participate.
    void dropInstance(PluginInstance* instance, bool finish);

    /// Returns the countdown window while it exists, otherwise 0.
    [[nodiscard]] Platform::WindowHandle getCountdownWindow() const { return countdownWindow_; }

    /// `now` is the tick of the event, in milliseconds.
    void onTimer(std::int32_t id, std::uint32_t now) override;

private:
    void beginCountdown(Take& take);
    void runDueFrames(Take& take);
    bool expandRange(Take& take);
    void showCountdown(const Take& take);
    void closeCountdownWindow();
    [[nodiscard]] AdaptorInterface* adaptor() const;
    // Until the host's undo step is closed.
    [[nodiscard]] bool isBusy() const {
        return take_ != nullptr && take_->getState() != Take::State::Closed;
    }

    // The last one, or null. Shared with the operations under way, during which it may be replaced.
    std::shared_ptr<Take> take_;
    FrameClock clock_;
    Platform::WindowHandle countdownWindow_ = 0;
    bool inEvent_ = false; // a timer event runs; those that come meanwhile wait
};

} // namespace MVR
