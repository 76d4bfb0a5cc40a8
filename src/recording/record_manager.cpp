#include "recording/record_manager.h"

#include "core/base/border.h"
#include "core/base/error_codes.h"
#include "core/base/sdk/log.h"
#include "core/contract/adaptor_interface.h"
#include "core/contract/key_codes.h"
#include "core/services/core_services.h"
#include "core/services/user_dialogs.h"
#include "core/util/to_integer.h"
#include "platform/sdk/clock.h"
#include "recording/countdown_window.h"
#include "recording/resimulation.h"
#include "recording/resimulation_dialog.h"

#include <cmath>
#include <string>

namespace MVR {

namespace {

constexpr double kTicksPerSecond = 1000.0;
constexpr double kShortestWait = 0.001; // seconds

} // namespace

RecordManager::RecordManager(CoreImplementation* core, CoreServices* services)
    : CoreSubSystem(core, services) {
    const Log entry("Constructing Record manager Core subsystem", Log::Notice);
}

RecordManager::~RecordManager() {
    const Log entry("DeInitializing Record manager Core subsystem", Log::Notice);
    stopRecording();
}

AdaptorInterface* RecordManager::adaptor() const {
    return getServices().getAdaptor();
}

std::int32_t RecordManager::startRecording() {
    if (isBusy())
        return reportCode(Codes::kAlreadyRecording);
    const Log entry("Start recording", Log::Notice);
    adaptor()->beginUndo("Record");
    const double start = adaptor()->getTime();
    double rangeStart = 0.0;
    double rangeEnd = 0.0;
    adaptor()->getRange(&rangeStart, &rangeEnd);
    const auto take = std::make_shared<Take>(getServices(), TakeSource::Live, start, rangeEnd);
    take_ = take;
    take->begin();
    if (!take->isRecording()) // the host or a tool stopped it
        return 0;
    clock_.start(Platform::tickMs());
    beginCountdown(*take);
    adaptor()->setTime(start);
    if (!take->isRecording())
        return 0;
    armTimer(kFrameTimer, adaptor()->getFrameStep());
    take->quietLog();
    return 0;
}

void RecordManager::beginCountdown(Take& take) {
    const std::int32_t seconds = getServices().getStartCountdown();
    take.setTime(take.getStart() - seconds);
    if (seconds != 0)
        countdownWindow_ = createCountdownWindow(getServices().getDialogs().getWindow(), -1, -1);
}

std::int32_t RecordManager::stopRecording() {
    const std::shared_ptr<Take> take = take_;
    if (take == nullptr || !take->isGoingOn())
        return 0;
    if (take->getSource() == TakeSource::Stored) {
        take->requestStop();
        return 0;
    }
    take->restoreLog();
    const Log entry("Stop recording", Log::Notice);
    take->noteWhatIsMissing(clock_);
    closeCountdownWindow();
    disarmTimer(kFrameTimer);
    {
        Log finishing("finishing recording", Log::Notice);
        finishing.write("finishing plugins");
        take->finishTools(take->getTime());
        finishing.write("Deactivating UniDevice");
        take->deactivateDevices();
    }
    adaptor()->setTime(take->getTime());
    take->close();
    return 0;
}

void RecordManager::onTimer(std::int32_t id, std::uint32_t now) {
    // A tool that runs a message loop in its step lets events in: later events make up for their
    // time.
    if (id != kFrameTimer || inEvent_ || !isRecording())
        return;
    inEvent_ = true;
    const std::shared_ptr<Take> take = take_;
    clock_.beginEvent(now);
    runDueFrames(*take);
    if (take->isRecording()) {
        if (take->getStart() > take->getTime())
            showCountdown(*take);
        adaptor()->setTime(take->getTime());
    }
    if (take->isRecording()) {
        const double step = adaptor()->getFrameStep();
        const double wait = step - (Platform::tickMs() - now) / kTicksPerSecond;
        const bool isBehind = clock_.getDue() >= step; // the host may let events in seldom
        armTimer(kFrameTimer, wait > 0.0 && !isBehind ? wait : kShortestWait);
    }
    inEvent_ = false;
}

void RecordManager::runDueFrames(Take& take) {
    double step = adaptor()->getFrameStep();
    while (clock_.nextFrame(step)) {
        const double next = take.getTime() + step;
        take.setTime(std::floor(next / step + 0.5) * step);
        if (take.getTime() > take.getEnd() && !expandRange(take)) {
            stopRecording();
            return;
        }
        if (!take.isRecording()) // the host stopped it when its range grew
            return;
        if (take.getTime() > take.getStart()) {
            closeCountdownWindow();
            clock_.noteLateness(step);
            take.simulate();
            if (!take.isRecording())
                return;
        }
        step = adaptor()->getFrameStep();
    }
}

/// Doubles the end of the range. Returns false if the user wants the take to end there.
bool RecordManager::expandRange(Take& take) {
    if (!getServices().getAutoExpand())
        return false;
    take.setEnd(take.getEnd() + take.getEnd());
    double rangeStart = 0.0;
    double rangeEnd = 0.0;
    adaptor()->getRange(&rangeStart, &rangeEnd);
    adaptor()->setRange(rangeStart, take.getEnd());
    return true;
}

void RecordManager::showCountdown(const Take& take) {
    const double remaining = take.getStart() - take.getTime();
    updateCountdownWindow(countdownWindow_, std::to_string(Util::toInteger(remaining + 0.999)),
                          std::fmod(remaining, 1.0));
}

void RecordManager::closeCountdownWindow() {
    if (countdownWindow_ != 0)
        (void)Platform::destroyWindow(countdownWindow_);
    countdownWindow_ = 0;
}

void RecordManager::handleKey(std::int32_t virtualKey, bool pressed, bool ctrl, bool alt,
                              bool shift) {
    if (pressed || take_ == nullptr || !take_->isGoingOn() || isResimulating())
        return;
    if (virtualKey == KeyCode::kSpace || virtualKey == KeyCode::kEscape) {
        stopRecording();
    } else if (virtualKey == 'Z' && ctrl && !alt && !shift) {
        stopRecording();
        if (adaptor()->undo())
            (void)startRecording(); // a failure is logged
    }
}

double RecordManager::getDelay() const {
    if (!isRecording() || isResimulating())
        return 0.0;
    return clock_.getDelay(Platform::tickMs());
}

std::vector<PluginInstance*> RecordManager::getRecordedInstances() const {
    return take_ != nullptr ? take_->getTools() : std::vector<PluginInstance*>();
}

void RecordManager::dropInstance(PluginInstance* instance, bool finish) {
    if (const std::shared_ptr<Take> take = take_)
        take->drop(instance, finish);
}

std::int32_t RecordManager::resimulate(double start, double end) {
    if (isBusy())
        return reportCode(Codes::kAlreadyRecording);
    const double frameRate = adaptor()->getFrameRate();
    const double frames = (end - start) * frameRate;
    if (!(frameRate > 0.0) || !std::isfinite(frames) || frames > kMostFrames)
        return reportCode(Codes::kResimulateBadRange);
    const Log entry("Resimulating", Log::Notice);
    adaptor()->beginUndo("Resimulating");
    const auto take = std::make_shared<Take>(getServices(), TakeSource::Stored, start, end);
    take_ = take;
    Resimulation resimulation(*take, clock_, *adaptor());
    take->begin();
    take->quietLog();
    const Border::OpenCall dialog; // the host's events go on meanwhile
    ResimulationDialog(resimulation).run(getServices().getDialogs().getWindow());
    take->restoreLog();
    return 0;
}

} // namespace MVR
