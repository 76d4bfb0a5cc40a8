// The adaptor's way into the core: loads it, places a tool, records a take of two seconds, takes it
// away and brings it back, simulates it again.

#include "small_adaptor.h"

#include "core/base/sdk/export.h"
#include "core/contract/core_interface.h"
#include "core/contract/host_event.h"
#include "core/contract/setting_ids.h"
#include "small_host.h"

#include <algorithm>
#include <chrono>
#include <cmath>
#include <cstdint>
#include <cstdio>
#include <thread>

#include <dlfcn.h>

namespace {

constexpr double kTakeSeconds = 2.0;

// The core as a library: its four functions.
struct Library {
    void* handle = nullptr;
    MVR::AttachFunction attach = nullptr;
    MVR::DetachFunction detach = nullptr;
    MVR::GetVersionFunction getVersion = nullptr;
    MVR::PumpEventsFunction pumpEvents = nullptr;
};

template <class Function>
bool find(const Library& library, const char* name, Function& function) {
    function = reinterpret_cast<Function>(dlsym(library.handle, name));
    return function != nullptr;
}

bool load(const char* path, Library& library) {
    library.handle = dlopen(path, RTLD_NOW | RTLD_LOCAL);
    if (library.handle == nullptr) {
        std::fprintf(stderr, "%s\n", dlerror());
        return false;
    }
    if (!find(library, "attach", library.attach) || !find(library, "detach", library.detach) ||
        !find(library, "getVersion", library.getVersion) ||
        !find(library, "pumpEvents", library.pumpEvents) ||
        library.getVersion() != MVR::kCoreVersion) {
        std::fprintf(stderr, "%s is no core of version %d\n", path, int(MVR::kCoreVersion));
        return false;
    }
    return true;
}

// A "Follower", its input bound to the pendulum. A host would keep such a tag in its scene file; it
// is what getConfiguration() gives. The input's own settings stay as they are but for the dead
// zone, which a pendulum doesn't need.
MVR::Tag followerOnPendulum() {
    MVR::Tag control = MVR::Tag::element("control");
    control.attributeRef("device") = "Pendulum";
    control.attributeRef("type") = "swing";
    control.attributeRef("index") = "0";

    MVR::Tag property = MVR::Tag::element("property");
    property.attributeRef("name") = "Position";
    property.addChild(MVR::Tag::element("deadzone", 0.0));
    property.addChild(control);

    MVR::Tag profile = MVR::Tag::element("profile");
    profile.attributeRef("name") = "";
    profile.addChild(property);

    MVR::Tag tool = MVR::Tag::element("MVR_Plugin");
    tool.addChild(MVR::Tag::element("type", "Follower"));
    tool.addChild(MVR::Tag::element("name", "Follower_01"));
    tool.addChild(MVR::Tag::element("inputprofile")).addChild(profile);

    MVR::Tag configuration = MVR::Tag::element("MVR");
    configuration.addChild(tool);
    return configuration;
}

// The host's loop for the length of a take. The core's timers run in it.
void runTake(const Library& library, SmallHost& host, MVR::CoreInterface& core) {
    while (core.isRecording() && host.getTime() < kTakeSeconds) {
        const std::int32_t milliseconds = library.pumpEvents(nullptr);
        std::this_thread::sleep_for(std::chrono::milliseconds(std::clamp(milliseconds, 0, 20)));
    }
    if (core.isRecording()) {
        core.stopRecording();
    }
}

// One key for each frame of the take, none missing, and a movement in them.
bool isWhole(const Keys& keys, double frameRate) {
    long frame = 0; // the take's first key is the one after its start
    double lowest = 0.0;
    double highest = 0.0;
    for (const auto& [keyFrame, position] : keys) {
        if (keyFrame != ++frame) {
            return false;
        }
        lowest = std::min(lowest, position[0]);
        highest = std::max(highest, position[0]);
    }
    return frame >= std::lround(kTakeSeconds * frameRate) && highest - lowest > 1.0;
}

bool isSame(const Keys& take, const Keys& other) {
    return std::equal(take.begin(), take.end(), other.begin(), other.end(),
                      [](const auto& a, const auto& b) {
                          return a.first == b.first && std::abs(a.second[0] - b.second[0]) < 1e-9;
                      });
}

bool report(const char* what, bool isGood) {
    std::printf("%s: %s\n", what, isGood ? "yes" : "NO");
    return isGood;
}

bool recordAndSimulate(const Library& library, SmallHost& host, MVR::CoreInterface& core) {
    const std::int32_t noCountdown = 0;
    core.setProperty(MVR::Setting::kStartCountdown, &noCountdown);
    core.loadConfiguration(followerOnPendulum());
    const SmallNode* const node = host.firstNode();
    if (!report("tool placed", node != nullptr) ||
        !report("take started", core.startRecording() == 0)) {
        return false;
    }
    runTake(library, host, core);
    const Keys take = node->keys;
    std::printf("keys: %zu\n", take.size());
    bool isGood = report("one key a frame", isWhole(take, host.getFrameRate()));

    isGood &= report("one undo takes it away", host.undo() && node->keys.empty());
    isGood &= report("one redo brings it back", host.redo() && node->keys == take);

    const std::int32_t code = core.resimulate(0.0, host.getTime());
    isGood &= report("simulated again, the same", code == 0 && isSame(take, node->keys));
    return isGood;
}

} // namespace

MVR_EXPORT int recordTake(const char* coreLibraryOrNull) {
    Library library;
    if (!load(coreLibraryOrNull != nullptr ? coreLibraryOrNull : MIRVANE_CORE_LIBRARY, library)) {
        return 2;
    }
    bool isGood = false;
    {
        SmallHost host; // must outlive detach
        if (MVR::CoreInterface* const core = library.attach(&host)) {
            isGood = recordAndSimulate(library, host, *core);
            library.detach(core);
        }
    }
    dlclose(library.handle);
    return isGood ? 0 : 1;
}
