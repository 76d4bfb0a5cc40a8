// Frames of a take and of its resimulation, beside a bare loop over the same devices, controls and
// properties that does the same reads, mappings, key pushes and virtual calls and nothing else.
// Also a frame after an hour of recording, beside one of the first minute. Each round is ten
// seconds at 60 frames a second.

#include "bench_host.h"
#include "instance/plugin_instance.h"
#include "platform/sdk/clock.h"
#include "plugins/contract/c_camera_plugin.h"
#include "plugins/contract/c_interface.h"
#include "plugins/instance_reference.h"
#include "plugins/libraries/core_library.h"
#include "plugins/libraries/plugin.h"
#include "unidevice/sdk/control.h"
#include "unidevice/sdk/device_handler.h"

#include <benchmark/benchmark.h>
#include <malloc.h>

#include <cmath>
#include <cstdint>
#include <string>
#include <utility>
#include <vector>

namespace {

using namespace MVR;

constexpr int kProperties = 8;
constexpr int kManyTools = 100;
constexpr double kFrameRate = 60;
constexpr double kSeconds = 10;
constexpr int kFrames = static_cast<int>(kSeconds * kFrameRate);
constexpr int kRoundsOfMinute = 6;
constexpr int kHour = 3600;

std::uint64_t sum = 0; // of what the tools read

// Without the last digits, since a resimulation reads between keys.
void addToSum(double value) {
    sum = sum * 31 + static_cast<std::uint64_t>(std::llround(value * 1e6));
}

class Tool final : public CCamera {
public:
    using CCamera::CCamera;

    std::int32_t init() override {
        for (int i = 0; i < kProperties; ++i)
            properties_.push_back(getInterface()->addProperty(
                "P" + std::to_string(i), UniDevice::finite | UniDevice::infinite, nullptr));
        return 0;
    }
    void record(double) override {
        for (UniDevice::Property* property : properties_)
            addToSum(property->getValue());
    }

private:
    std::vector<UniDevice::Property*> properties_;
};

class Kind final : public CCameraPlugin {
public:
    CCamera* create(CCamera::CreateParam* param) override { return new Tool(param); }
    std::string getName() override { return "Reader"; }
    std::string getDescription() override { return "Reads its properties"; }
    std::string getCategory() override { return ""; }
};

// Eight axes that move with each update.
class Axes final : public UniDevice::Device {
public:
    Axes() : Device(true) {
        setDriver(UniDevice::DeviceHandler::instance()->findDriver("dummydriver"));
        for (int i = 0; i < kProperties; ++i)
            controls_.emplace_back(this, UniDevice::finite, 0.1);
    }
    std::int32_t controlCount() const override { return kProperties; }
    UniDevice::Control* control(std::int32_t index) override {
        return &controls_[static_cast<std::size_t>(index)];
    }
    bool update(std::int32_t) override {
        for (UniDevice::Control& each : controls_)
            each.setValue(static_cast<double>(++samples * 7919 % 2001) / 1000 - 1);
        return true;
    }
    bool prepareDetection() override { return false; }
    UniDevice::Control* detectControl(const std::vector<UniDevice::Control*>*, void*) override {
        return nullptr;
    }
    void resetControls() override {}

    std::uint64_t samples = 0;

private:
    std::vector<UniDevice::Control> controls_;
};

// An attached core with tools whose properties are all bound.
class Setup {
public:
    explicit Setup(int tools) {
        core.setStartCountdown(0);
        std::int32_t error = 0;
        Plugin::create(CoreLibrary::instance(), new Kind, error);
        for (int i = 0; i < tools; ++i) {
            PluginInstance* const tool = core.createByType("Reader", "", false)->getInstance();
            for (int each = 0; each < kProperties; ++each)
                tool->getProperties().property(each)->bind(axes->control(each));
            instances.push_back(tool);
        }
        // Half a frame early, so that each event has a frame due, whatever the rounding.
        (void)core.startRecording();
        clock.advance(8);
        core.onTimer(RecordManager::kFrameTimer, Platform::tickMs());
        core.stopRecording();
    }

    // Ten seconds, an event for each frame.
    void begin(double start) {
        host.adaptor.setTime(start);
        (void)core.startRecording();
        host.adaptor.clearUndo();
        axes->samples = 0;
        sum = 0;
    }
    void runFrames() {
        for (int frame = 0; frame < kFrames; ++frame) {
            clock.advance(frame % 3 == 2 ? 16 : 17);
            core.onTimer(RecordManager::kFrameTimer, Platform::tickMs());
        }
    }
    void measureTakes(benchmark::State& state, double start) {
        for (auto round : state) {
            state.PauseTiming();
            begin(start);
            state.ResumeTiming();
            runFrames();
            state.PauseTiming();
            core.stopRecording();
            state.ResumeTiming();
        }
    }

    Platform::HandClock clock;
    BenchHost host;
    CoreImplementation& core = *host.core;
    Axes* axes = new Axes; // the core destroys it
    std::vector<PluginInstance*> instances;
};

// The part of a tool that the bare loop needs.
struct BareTool {
    CCamera* code;
    std::vector<UniDevice::Property*> properties;
    std::vector<std::vector<std::pair<double, double>>> keys;
};

std::vector<BareTool> bareTools(const Setup& setup) {
    std::vector<BareTool> tools;
    for (PluginInstance* instance : setup.instances) {
        BareTool& tool = tools.emplace_back();
        tool.code = instance->getCode();
        tool.keys.resize(kProperties);
        for (int i = 0; i < kProperties; ++i)
            tool.properties.push_back(instance->getProperties().property(i));
    }
    return tools;
}

void bareTake(Setup& setup, std::vector<BareTool>& tools) {
    for (int frame = 1; frame <= kFrames; ++frame) {
        const double time = frame / kFrameRate;
        setup.axes->update(0);
        for (BareTool& tool : tools) {
            for (std::size_t i = 0; i < kProperties; ++i)
                tool.keys[i].emplace_back(time, tool.properties[i]->control->getValue());
            tool.code->record(time);
        }
    }
}

void finish(benchmark::State& state) {
    state.SetItemsProcessed(state.iterations() * kFrames);
    state.counters["hash"] = static_cast<double>(sum & 0xffffffff);
}

void takeOurs(benchmark::State& state) {
    Setup setup(kManyTools);
    setup.measureTakes(state, 0);
    finish(state);
}

void takeBare(benchmark::State& state) {
    Setup setup(kManyTools);
    std::vector<BareTool> tools = bareTools(setup);
    for (auto round : state) {
        state.PauseTiming();
        for (BareTool& tool : tools)
            for (auto& keys : tool.keys)
                keys = {};
        setup.axes->samples = 0;
        sum = 0;
        state.ResumeTiming();
        bareTake(setup, tools);
    }
    finish(state);
}

void resimulateOurs(benchmark::State& state) {
    Setup setup(kManyTools);
    setup.begin(0);
    setup.runFrames();
    setup.core.stopRecording();
    for (auto round : state) {
        sum = 0;
        (void)setup.core.resimulate(0, kSeconds);
    }
    finish(state);
}

void resimulateBare(benchmark::State& state) {
    Setup setup(kManyTools);
    std::vector<BareTool> tools = bareTools(setup);
    bareTake(setup, tools);
    std::vector<UniDevice::Control> controls(kManyTools * kProperties,
                                             UniDevice::Control(nullptr, 0xFFFF, 0));
    std::size_t next = 0;
    for (BareTool& tool : tools)
        for (UniDevice::Property* property : tool.properties)
            property->bind(&controls[next++]);
    for (auto round : state) {
        sum = 0;
        for (std::size_t frame = 0; frame < kFrames; ++frame) {
            setup.axes->update(0);
            for (BareTool& tool : tools) {
                for (std::size_t i = 0; i < kProperties; ++i)
                    tool.properties[i]->control->setValue(tool.keys[i][frame].second);
                tool.code->record(static_cast<double>(frame) / kFrameRate);
            }
        }
    }
    finish(state);
    for (BareTool& tool : tools)
        for (UniDevice::Property* property : tool.properties)
            property->bind(nullptr);
}

// A take of one minute that begins with the keys up to `start` in place. Each start sees memory
// that the process touches for the first time, as a take in a running host does.
void minuteFrom(benchmark::State& state, int start) {
    Setup setup(kManyTools);
    for (PluginInstance* instance : setup.instances) {
        instance->getStoredInput().getValues().resize(kProperties);
        for (auto& variable : instance->getStoredInput().getValues())
            for (int frame = 1; frame < start * static_cast<int>(kFrameRate); ++frame)
                variable.setKey(frame / kFrameRate, frame);
    }
    setup.begin(start);
    malloc_trim(0);
    for (auto round : state)
        setup.runFrames();
    setup.core.stopRecording();
    finish(state);
}

const int kRegistered = [] {
    benchmark::RegisterBenchmark("recorded_frame/mirvane", takeOurs);
    benchmark::RegisterBenchmark("recorded_frame/bare_loop", takeBare);
    benchmark::RegisterBenchmark("resimulated_frame/mirvane", resimulateOurs);
    benchmark::RegisterBenchmark("resimulated_frame/bare_loop", resimulateBare);
    benchmark::RegisterBenchmark("frame_after_hour/mirvane", minuteFrom, kHour)
        ->Iterations(kRoundsOfMinute);
    benchmark::RegisterBenchmark("frame_after_hour/first_minute", minuteFrom, 0)
        ->Iterations(kRoundsOfMinute);
    return 0;
}();

} // namespace
