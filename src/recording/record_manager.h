/// \file
/// Takes and resimulations: the heart of the product.
#pragma once

#include "core/services/core_sub_system.h"
#include "core/services/timer_manager.h"
#include "platform/windows.h"

#include <cstdint>
#include <vector>

namespace MVR {

class AdaptorInterface;
class CoreImplementation;
class PluginInstance;

/// Drives the checked tools frame by frame: in a take from the live devices, against the clock; in
/// a resimulation from the stored values, as fast as the machine allows.
///
/// A take:
/// 1. startRecording() opens the host's undo step, prepares the tools and arms the frame timer.
/// 2. onTimer() counts down, then simulates one step for each frame of the host's grid that has
///    passed, at most three an event; what is still due comes with later events.
/// 3. stopRecording() finishes the tools and closes the undo step.
///
/// A resimulation is one call of resimulate(), which runs a modal dialog until the end.
///
/// Scene times are seconds. All of it runs on the host's thread. Tools may stop the take, be
/// deleted and run the message loop from inside their own operations.
class RecordManager : public CoreSubSystem, public Util::TimerManager {
public:
    static constexpr std::int32_t kFrameTimer = 123;
    /// A resimulation of more frames is refused: a year at 60 frames a second.
    static constexpr double kMostFrames = 2e9;

    RecordManager(CoreImplementation* core, CoreServices* services);
    /// A take that still runs is stopped, so that the host's undo step is closed. Not allowed
    /// during a resimulation, whose dialog stands on the stack.
    ~RecordManager() override;

    /// 0, or the code of "ALREADYRECORDING" while a take or a resimulation runs or is being ended.
    [[nodiscard]] std::int32_t startRecording();
    /// Ends a take, and makes a resimulation end after its present frame. Nothing happens when
    /// neither runs. Always 0.
    std::int32_t stopRecording();
    /// True during a take and during a resimulation.
    [[nodiscard]] bool isRecording() const { return recording_; }
    [[nodiscard]] bool isResimulating() const { return resimulating_; }

    /// 1 is real time, each step more halves the speed; taken up by the next timer event.
    void setSlowMotion(std::int32_t slowMotion);
    [[nodiscard]] std::int32_t getSlowMotion() const;

    /// Simulates the frames behind `start` up to `end` again. Returns when all are done or the user
    /// stopped it; the frames done so far stay. 0, the code of "ALREADYRECORDING", or that of
    /// "RESIMULATE_BADRANGE" for a span that is no number or has more than `kMostFrames` frames.
    [[nodiscard]] std::int32_t resimulate(double start, double end);

    /// A key that was kept from the host during a take: Space and Escape stop it, Ctrl+Z takes it
    /// back and starts again.
    void handleKey(std::int32_t virtualKey, bool pressed, bool ctrl, bool alt, bool shift);

    /// The tools of the running take or resimulation, in the order they run in.
    [[nodiscard]] std::vector<PluginInstance*> getRecordedInstances() const;
    /// Takes a tool out of the running take or resimulation, finished if `finish`: called when it
    /// is deleted. Harmless for one that takes no part.
    void dropInstance(PluginInstance* instance, bool finish);

    /// The countdown window while it exists, else 0.
    [[nodiscard]] Platform::WindowHandle getCountdownWindow() const { return countdownWindow_; }

    /// For the resimulation's dialog: the share that is done, 0 to 1.
    [[nodiscard]] float getProgress() const { return progress_; }
    /// Simulates for up to half a second; false when nothing is left to do.
    [[nodiscard]] bool runResimulationSlice();
    void finishResimulation();

    /// `now` is the tick of the event, in milliseconds.
    void onTimer(std::int32_t id, std::uint32_t now) override;

private:
    void prepare(double time);
    void simulate(double time);
    void finish(double time);
    void deactivateDevices();
    void runDueFrames(std::uint32_t take);
    bool expandRange();
    void showCountdown();
    void closeCountdownWindow();
    template <class Operation>
    void forEachInstance(Operation operation);
    [[nodiscard]] AdaptorInterface* adaptor() const;
    // Until the host's undo step is closed.
    [[nodiscard]] bool isBusy() const { return recording_ || stopping_; }
    [[nodiscard]] bool isRunning(std::uint32_t take) const { return recording_ && take_ == take; }

    Platform::WindowHandle countdownWindow_ = 0;
    double slowMotionFactor_ = 1.0; // real seconds per scene second
    std::int32_t savedLogThreshold_ = 0;
    double startTime_ = 0.0;
    double endTime_ = 0.0;
    std::vector<PluginInstance*> instances_; // parents first; not owned; null: dropped in a walk
    std::uint32_t lastTick_ = 0;
    double currentTime_ = 0.0; // starts before startTime_ by the countdown
    double accumulator_ = 0.0; // scene seconds that have passed and are not yet simulated
    bool recording_ = false;
    bool resimulating_ = false;
    float progress_ = 0.0F;
    double resimTime_ = 0.0; // of the next step of a resimulation
    double savedSlowMotion_ = 0.0;

    std::uint32_t take_ = 0;     // counts takes and resimulations, to notice the end of one
    std::int32_t walks_ = 0;     // walks over instances_ that are under way
    bool inEvent_ = false;       // a timer event runs; those that come in its midst wait
    bool stopping_ = false;      // stopRecording or finishResimulation runs
    bool devicesActive_ = false; // for this take or resimulation
    bool stopRequested_ = false; // the resimulation is to end before its next step
};

} // namespace MVR
