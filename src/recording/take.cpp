#include "recording/take.h"

#include "core/base/border.h"
#include "core/base/sdk/log.h"
#include "core/contract/adaptor_interface.h"
#include "core/services/core_services.h"
#include "core/services/key_hook.h"
#include "core/services/take_notes.h"
#include "instance/plugin_instance.h"
#include "plugins/instance_manager.h"
#include "unidevice/sdk/device_handler.h"

#include <cmath>
#include <string>
#include <utility>

namespace MVR {

Take::Take(CoreServices& services, TakeSource source, double start, double end)
    : services_(services), source_(source), start_(start), end_(end), time_(start),
      logThreshold_(Log::getThreshold()) {}

AdaptorInterface& Take::host() const {
    return *services_.getAdaptor();
}

void Take::begin() {
    services_.getTakeNotes().clear();
    Hooks::hookEnabled = source_ == TakeSource::Live;
    InstanceManager& tree = services_.getTree();
    std::vector<PluginInstance*> tools = tree.sortForRecording(tree.getInstances(true));
    const std::vector<CInterface*> interfaces(tools.begin(), tools.end());
    toolDevices_.insert(tools.begin(), tools.end());
    tools_.assign(std::move(tools)); // before the host is told, which may delete some
    host().recordingStarted(interfaces);
    if (!isRecording()) // the host stopped it
        return;
    Log entry("Preparing recording", Log::Notice);
    entry.write("Activating UniDevice");
    devices_ = UniDevice::DeviceHandler::instance();
    devices_->activate();
    if (source_ == TakeSource::Live)
        (void)Border::call(
            [] { return "A device"; }, "control",
            [this] { silentInputs_.start(services_.getTree().getInstances(false)); });
    entry.write("initalizing plugins");
    const auto isInTake = [this](const UniDevice::Device& device) {
        return toolDevices_.count(&device) > 0 &&
               !static_cast<const PluginInstance&>(device).isSittingOut();
    };
    tools_.forEach([this, &isInTake](PluginInstance& tool) {
        tool.prepareRecording(start_, source_, isInTake);
    });
}

void Take::quietLog() {
    logThreshold_ = Log::getThreshold(); // a tool may have set another
    Log::setThreshold(Log::Error);
}

void Take::restoreLog() const {
    Log::setThreshold(logThreshold_);
}

void Take::simulate() {
    ++frames_;
    const double time = time_;
    if (source_ == TakeSource::Stored)
        tools_.forEach([time](PluginInstance& tool) { tool.playInput(time); });
    services_.getTree().orderDevices();
    devices_->update();
    tools_.forEach([time](PluginInstance& tool) { tool.holdInput(time); });
    tools_.forEach([time](PluginInstance& tool) { tool.step(time); });
    tools_.forEach([](PluginInstance& tool) { tool.releaseInput(); });
}

void Take::requestStop() {
    if (state_ == State::Running)
        state_ = State::StopWanted;
}

void Take::finishTools(double time) {
    state_ = State::Finishing;
    tools_.forEach([time](PluginInstance& tool) { tool.finishRecording(time); });
    tools_.clear(); // from now on they can be deleted without telling the take
}

void Take::noteWhatIsMissing(const FrameClock& clock) {
    if (source_ != TakeSource::Live || frames_ == 0)
        return;
    TakeNotes& notes = services_.getTakeNotes();
    std::vector<CoreTakeNote> silent;
    (void)Border::call([] { return "A device"; }, "control",
                       [&] { silent = silentInputs_.find(getTools(), start_); });
    for (CoreTakeNote& note : silent) {
        Log(Log::Warning).write(note.text);
        notes.add(std::move(note));
    }
    if (clock.getLateFrames() == 0)
        return;
    const std::string text = std::to_string(clock.getLateFrames()) + " of " +
                             std::to_string(frames_) + " frames came late, at most by " +
                             std::to_string(std::lround(clock.getLongestDelay() * 1000)) + " ms";
    Log(Log::Warning).write(text);
    notes.add({CoreTakeNote::kLateFrames, "", "", clock.getLateFrames(), text});
}

void Take::deactivateDevices() {
    if (UniDevice::DeviceHandler* const devices = std::exchange(devices_, nullptr))
        devices->deactivate();
}

void Take::close() {
    state_ = State::Closing;
    host().recordingFinished();
    Hooks::hookEnabled = false;
    host().endUndo();
    state_ = State::Closed;
}

void Take::drop(PluginInstance* tool, bool finish) {
    if (!tools_.drop(tool))
        return;
    toolDevices_.erase(tool);
    if (finish)
        tool->finishRecording(time_);
}

} // namespace MVR
