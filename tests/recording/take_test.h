#pragma once

#include "instance/plugin_instance.h"
#include "platform/event_pump.h"
#include "platform/keyboard_hook.h"
#include "support/core_fixture.h"
#include "support/scripted_device.h"
#include "support/scripted_tool.h"

#include <algorithm>
#include <cmath>
#include <string>
#include <utility>
#include <vector>

namespace MVR::Testing {

constexpr std::int32_t kCtrl = 17;

/// One tool with one property, bound to an axis that moves with each update, and a host at 25
/// frames per second from 0 to 4.
class TakeTest : public CoreTest {
protected:
    using Curve = std::vector<std::pair<double, double>>;

    void SetUp() override {
        CoreTest::SetUp();
        makeKindAndDevice();
        device->onUpdate = [this] { device->set("X", std::sin(++sample * 0.1)); };
        tool = &kind->place(*core);
        tool->findProperty("Axis")->bind(axis);
        tool->findProperty("Axis")->deadzone = 0;
        kind->calls.clear();
        adaptor.calls.clear();
        adaptor.clearUndo();
        threshold = Log::getThreshold();
        core->setStartCountdown(0);
    }

    void makeKindAndDevice() {
        ASSERT_NE(core, nullptr);
        kind = &ScriptedPlugin::add("Probe");
        kind->properties = {"Axis"};
        kind->onRecord = [this](ScriptedTool& each, double time) {
            curve.emplace_back(time, each.read(0));
        };
        device = new ScriptedDevice("Box");
        axis = device->add("X");
    }

    /// Lets time pass, a millisecond at a time.
    void pass(int milliseconds) {
        for (int i = 0; i < milliseconds; ++i)
            event(1);
    }

    /// Lets time pass during which the host runs nothing.
    void event(std::uint32_t milliseconds) {
        clock.advance(milliseconds);
        Platform::runDueEvents();
    }

    void start() { ASSERT_EQ(core->startRecording(), 0); }

    /// Records a take of the next milliseconds; returns what the tool read.
    Curve take(int milliseconds) {
        start();
        pass(milliseconds);
        core->stopRecording();
        return std::exchange(curve, {});
    }

    /// Returns the frames that the tool got, as numbers of the grid.
    std::vector<long> frames() const {
        std::vector<long> numbers;
        for (const auto& [time, value] : curve)
            numbers.push_back(std::lround(time * adaptor.frameRate));
        return numbers;
    }

    static std::vector<long> range(long first, long last) {
        std::vector<long> numbers;
        while (first <= last)
            numbers.push_back(first++);
        return numbers;
    }

    /// Returns what is stored of the first property.
    Curve stored() const {
        const Util::KeySequence& keys = tool->getStoredInput().getValues().at(0).getKeys();
        Curve pairs;
        for (std::size_t i = 0; i < keys.size(); ++i)
            pairs.emplace_back(keys[i].time, keys[i].value);
        return pairs;
    }

    std::ptrdiff_t countCalls(const std::string& call) const {
        return std::count(adaptor.calls.begin(), adaptor.calls.end(), call);
    }

    ScriptedPlugin* kind = nullptr;
    ScriptedDevice* device = nullptr;
    UniDevice::Control* axis = nullptr;
    PluginInstance* tool = nullptr;
    Curve curve; ///< what the tool read, by frame
    int sample = 0;
    std::int32_t threshold = 0; ///< of the log, outside of takes
};

} // namespace MVR::Testing
