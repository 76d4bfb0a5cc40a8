#include "recording/record_manager.h"

#include "core/base/error_codes.h"
#include "core/base/sdk/log.h"
#include "core/contract/adaptor_interface.h"
#include "core/contract/core_interface.h"
#include "core/contract/setting_ids.h"
#include "core/services/core_services.h"
#include "core/services/key_hook.h"
#include "core/services/user_dialogs.h"
#include "instance/plugin_instance.h"
#include "platform/sdk/clock.h"
#include "plugins/instance_manager.h"
#include "recording/countdown_window.h"
#include "recording/resimulation_dialog.h"
#include "unidevice/sdk/device_handler.h"

#include <algorithm>
#include <cmath>
#include <limits>
#include <utility>

namespace MVR {

namespace {

constexpr std::int32_t kFramesPerEvent = 3;
constexpr double kSecondsPerTick = 0.001;
constexpr double kTicksPerSecond = 1000.0;
constexpr double kShortestWait = 0.001; // seconds
constexpr std::uint32_t kSliceMs = 500;
constexpr double kRangeTolerance = 0.00001; // keeps rounding from adding or losing the last frame

constexpr std::int32_t kKeyEscape = 27;
constexpr std::int32_t kKeySpace = 32;
constexpr std::int32_t kKeyZ = 90;

std::int32_t toInteger(double value) {
    using Limits = std::numeric_limits<std::int32_t>;
    if (std::isnan(value))
        return 0;
    return static_cast<std::int32_t>(
        std::clamp(value, static_cast<double>(Limits::min()), static_cast<double>(Limits::max())));
}

std::vector<CInterface*> toolsOf(const std::vector<PluginInstance*>& instances) {
    return {instances.begin(), instances.end()};
}

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

/// Runs `operation` on each instance in order, as long as the take goes on. Instances may drop out
/// in its midst.
template <class Operation>
void RecordManager::forEachInstance(Operation operation) {
    const std::uint32_t take = take_;
    ++walks_;
    for (std::size_t i = 0; i < instances_.size() && take_ == take; ++i)
        if (instances_[i] != nullptr)
            operation(*instances_[i]);
    if (--walks_ == 0)
        instances_.erase(std::remove(instances_.begin(), instances_.end(), nullptr),
                         instances_.end());
}

std::int32_t RecordManager::startRecording() {
    if (isBusy())
        return reportCode(Codes::kAlreadyRecording);
    const Log entry("Start recording", Log::Notice);
    adaptor()->beginUndo("Record");
    recording_ = true;
    const std::uint32_t take = ++take_;
    savedLogThreshold_ = Log::getThreshold();
    startTime_ = adaptor()->getTime();
    currentTime_ = startTime_;
    double rangeStart = 0.0;
    adaptor()->getRange(&rangeStart, &endTime_);
    Hooks::hookEnabled = true;

    prepare(startTime_);
    if (!isRunning(take)) // the host or a tool stopped it
        return 0;
    lastTick_ = Platform::tickMs();
    std::int32_t countdown = 0;
    getServices().getInterface().getProperty(Setting::kStartCountdown, &countdown);
    currentTime_ = startTime_ - countdown;
    if (countdown != 0)
        countdownWindow_ = createCountdownWindow(getServices().getDialogs().getWindow(), -1, -1);
    adaptor()->setTime(startTime_);
    if (!isRunning(take))
        return 0;
    armTimer(kFrameTimer, adaptor()->getFrameStep());
    savedLogThreshold_ = Log::getThreshold(); // a tool may have set another
    Log::setThreshold(Log::Error);
    return 0;
}

void RecordManager::prepare(double time) {
    // Kept before the host is told: it may delete tools.
    InstanceManager& tree = getServices().getTree();
    instances_ = tree.sortForRecording(tree.getInstances(true));
    const std::uint32_t take = take_;
    adaptor()->recordingStarted(toolsOf(instances_));
    if (!isRunning(take)) // the host stopped it
        return;
    Log entry("Preparing recording", Log::Notice);
    entry.write("Activating UniDevice");
    devicesActive_ = true;
    UniDevice::DeviceHandler::instance()->activate();
    entry.write("initalizing plugins");
    const TakeSource source = resimulating_ ? TakeSource::Stored : TakeSource::Live;
    forEachInstance([=](PluginInstance& instance) { instance.prepareRecording(time, source); });
}

std::int32_t RecordManager::stopRecording() {
    if (resimulating_) {
        stopRequested_ = true;
        return 0;
    }
    if (!recording_ || stopping_)
        return 0;
    stopping_ = true;
    Log::setThreshold(savedLogThreshold_);
    const Log entry("Stop recording", Log::Notice);
    closeCountdownWindow();
    disarmTimer(kFrameTimer);
    {
        Log finishing("finishing recording", Log::Notice);
        finishing.write("finishing plugins");
        finish(currentTime_);
        finishing.write("Deactivating UniDevice");
        deactivateDevices();
    }
    adaptor()->setTime(currentTime_);
    recording_ = false;
    adaptor()->recordingFinished();
    Hooks::hookEnabled = false;
    adaptor()->endUndo();
    stopping_ = false;
    return 0;
}

void RecordManager::finish(double time) {
    forEachInstance([time](PluginInstance& instance) { instance.finishRecording(time); });
    // Nothing may be kept here of tools that can be deleted from now on.
    std::fill(instances_.begin(), instances_.end(), nullptr);
    if (walks_ == 0)
        instances_.clear();
}

void RecordManager::deactivateDevices() {
    if (std::exchange(devicesActive_, false))
        UniDevice::DeviceHandler::instance()->deactivate();
}

void RecordManager::simulate(double time) {
    UniDevice::DeviceHandler::instance()->update();
    forEachInstance([time](PluginInstance& instance) { instance.step(time); });
}

void RecordManager::onTimer(std::int32_t id, std::uint32_t now) {
    // A tool that runs a message loop in its step lets events in: their time is made up for later.
    if (id != kFrameTimer || inEvent_ || !recording_)
        return;
    inEvent_ = true;
    const std::uint32_t take = take_;
    accumulator_ += (now - lastTick_) * kSecondsPerTick / slowMotionFactor_;
    if (!std::isfinite(accumulator_)) // a slow motion beyond all bounds
        accumulator_ = 0.0;
    lastTick_ = now;
    runDueFrames(take);
    if (isRunning(take)) {
        if (startTime_ > currentTime_)
            showCountdown();
        adaptor()->setTime(currentTime_);
    }
    if (isRunning(take)) {
        const double wait =
            adaptor()->getFrameStep() - (Platform::tickMs() - now) / kTicksPerSecond;
        armTimer(kFrameTimer, wait > 0.0 ? wait : kShortestWait);
    }
    inEvent_ = false;
}

void RecordManager::runDueFrames(std::uint32_t take) {
    std::int32_t budget = kFramesPerEvent;
    while (true) {
        const double step = adaptor()->getFrameStep();
        if (step > accumulator_)
            break;
        if (budget == 0) { // what is still due stays for later events
            budget = -1;
            break;
        }
        --budget;
        currentTime_ += step;
        currentTime_ = std::trunc(currentTime_ / step + 0.5) * step;
        accumulator_ -= step;
        if (currentTime_ > endTime_ && !expandRange()) {
            stopRecording();
            return;
        }
        if (!isRunning(take)) // the host stopped it as its range grew
            return;
        if (currentTime_ > startTime_) {
            closeCountdownWindow();
            simulate(currentTime_);
            if (!isRunning(take))
                return;
        }
    }
    if (budget == 0)
        accumulator_ = 0.0;
}

/// Doubles the end of the range; false if the user wants the take to end there.
bool RecordManager::expandRange() {
    bool autoExpand = true;
    getServices().getInterface().getProperty(Setting::kAutoExpand, &autoExpand);
    if (!autoExpand)
        return false;
    endTime_ = endTime_ + endTime_;
    double rangeStart = 0.0;
    double rangeEnd = 0.0;
    adaptor()->getRange(&rangeStart, &rangeEnd);
    adaptor()->setRange(rangeStart, endTime_);
    return true;
}

void RecordManager::showCountdown() {
    const double remaining = startTime_ - currentTime_;
    updateCountdownWindow(countdownWindow_, std::to_string(toInteger(remaining + 0.999)),
                          std::fmod(remaining, 1.0));
}

void RecordManager::closeCountdownWindow() {
    if (countdownWindow_ != 0)
        (void)Platform::destroyWindow(countdownWindow_);
    countdownWindow_ = 0;
}

void RecordManager::handleKey(std::int32_t virtualKey, bool pressed, bool ctrl, bool alt,
                              bool shift) {
    if (pressed || !recording_ || resimulating_ || stopping_)
        return;
    if (virtualKey == kKeySpace || virtualKey == kKeyEscape) {
        stopRecording();
    } else if (virtualKey == kKeyZ && ctrl && !alt && !shift) {
        stopRecording();
        if (adaptor()->undo())
            (void)startRecording(); // a failure is logged
    }
}

std::vector<PluginInstance*> RecordManager::getRecordedInstances() const {
    std::vector<PluginInstance*> present;
    std::copy_if(instances_.begin(), instances_.end(), std::back_inserter(present),
                 [](const PluginInstance* instance) { return instance != nullptr; });
    return present;
}

void RecordManager::dropInstance(PluginInstance* instance, bool finish) {
    const auto found = std::find(instances_.rbegin(), instances_.rend(), instance);
    if (found == instances_.rend())
        return;
    if (walks_ > 0)
        *found = nullptr;
    else
        instances_.erase(std::next(found).base());
    if (finish)
        instance->finishRecording(resimulating_ ? resimTime_ : currentTime_);
}

void RecordManager::setSlowMotion(std::int32_t slowMotion) {
    slowMotionFactor_ = std::exp2(static_cast<double>(slowMotion) - 1.0);
}

std::int32_t RecordManager::getSlowMotion() const {
    const double doublings = std::trunc(std::log(slowMotionFactor_) / std::log(2.0) + 0.001);
    return toInteger(doublings + 1.0);
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
    startTime_ = start;
    endTime_ = end;
    recording_ = true;
    resimulating_ = true;
    stopRequested_ = false;
    ++take_;
    savedLogThreshold_ = Log::getThreshold();
    resimTime_ = 1.0 / frameRate + start;
    progress_ = 0.0F;
    savedSlowMotion_ = slowMotionFactor_;
    slowMotionFactor_ = 1.0;
    prepare(startTime_);
    savedLogThreshold_ = Log::getThreshold(); // a tool may have set another
    Log::setThreshold(Log::Error);
    ResimulationDialog(this).run(getServices().getDialogs().getWindow());
    Log::setThreshold(savedLogThreshold_);
    return 0;
}

bool RecordManager::runResimulationSlice() {
    const double step = 1.0 / adaptor()->getFrameRate();
    const std::uint32_t begin = Platform::tickMs();
    while (resimulating_ && !stopRequested_ && endTime_ + kRangeTolerance > resimTime_) {
        const double span = endTime_ - startTime_;
        progress_ = span > 0.0
                        ? static_cast<float>(std::clamp((resimTime_ - startTime_) / span, 0.0, 1.0))
                        : 1.0F;
        if (Platform::tickMs() - begin > kSliceMs)
            return true;
        simulate(resimTime_);
        const double next = resimTime_ + step;
        if (!(next > resimTime_)) // a time so large that a frame doesn't count any more
            break;
        resimTime_ = next;
    }
    progress_ = 1.0F;
    return false;
}

void RecordManager::finishResimulation() {
    if (!resimulating_ || stopping_)
        return;
    stopping_ = true;
    Log::setThreshold(savedLogThreshold_);
    finish(1.0 / adaptor()->getFrameRate() + endTime_);
    slowMotionFactor_ = savedSlowMotion_;
    recording_ = false;
    resimulating_ = false;
    deactivateDevices();
    adaptor()->recordingFinished();
    adaptor()->endUndo();
    stopping_ = false;
}

} // namespace MVR
