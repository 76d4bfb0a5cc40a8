// The adaptor's use of the core: loads it, places a tool, records a take of two seconds, undoes and
// redoes it, and simulates it again.

#include "small_adaptor.h"

#include "core/base/sdk/export.h"
#include "core/contract/core_extensions.h"
#include "core/contract/core_interface.h"
#include "core/contract/host_event.h"
#include "core/contract/setting_ids.h"
#include "core/messages/sdk/message_node.h"
#include "small_host.h"

#include <algorithm>
#include <chrono>
#include <cmath>
#include <cstdint>
#include <cstdio>
#include <filesystem>
#include <string>
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

// The host's list of the tools. A message of the core says when it is out of date.
class ToolList final : public MVR::Util::MessageNode {
public:
    explicit ToolList(MVR::CoreTools& tools) : MessageNode("Tool list"), tools_(tools) {}

    int changes = 0;
    void receive(MVR::Util::Message& message, bool) override {
        if (message.id != MVR::CoreTools::kListChanged)
            return;
        ++changes;
        for (const MVR::CoreTool& tool : tools_.list()) {
            std::printf("  %s (%s), objects: %zu\n", tool.name.c_str(), tool.type.c_str(),
                        tool.nodes.size());
        }
    }

private:
    MVR::CoreTools& tools_;
};

// Binds the input "Position" to the pendulum. Its parameters stay as they are, except for the dead
// zone, which a pendulum doesn't need.
MVR::Tag pendulumBindings() {
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
    return profile;
}

// The host's loop during a take. The core's timers run in it.
void runTake(const Library& library, SmallHost& host, MVR::CoreInterface& core) {
    while (core.isRecording() && host.getTime() < kTakeSeconds) {
        const std::int32_t milliseconds = library.pumpEvents(nullptr);
        std::this_thread::sleep_for(std::chrono::milliseconds(std::clamp(milliseconds, 0, 20)));
    }
    if (core.isRecording())
        core.stopRecording();
}

// Checks that each frame of the take has a key, and that the keys move.
bool isWhole(const Keys& keys, double frameRate) {
    long frame = 0; // the take's first key is the one after its start
    double lowest = 0.0;
    double highest = 0.0;
    for (const auto& [keyFrame, position] : keys) {
        if (keyFrame != ++frame)
            return false;
        lowest = std::min(lowest, position[0]);
        highest = std::max(highest, position[0]);
    }
    return frame >= std::lround(kTakeSeconds * frameRate) && highest - lowest > 1.0;
}

bool isSame(const Keys& take, const Keys& other) {
    return std::equal(
        take.begin(), take.end(), other.begin(), other.end(),
        [](const auto& a, const auto& b) {
            return a.first == b.first && std::abs(a.second[0] - b.second[0]) < 1e-9;
        });
}

bool report(const char* what, bool isGood) {
    std::printf("%s: %s\n", what, isGood ? "yes" : "NO");
    return isGood;
}

// Prints a code of the core with its reasons.
bool report(const char* what, std::int32_t code, MVR::CoreFaults& faults) {
    for (const MVR::CoreFault& fault : faults.list())
        std::printf("  %s\n", toText(fault).c_str());
    return report(what, code == 0 && faults.list().empty());
}

bool recordAndSimulate(const Library& library, SmallHost& host, MVR::CoreInterface& core) {
    const std::int32_t noCountdown = 0;
    core.setProperty(MVR::Setting::kStartCountdown, &noCountdown);
    const SmallNode* const node = host.firstNode();
    if (!report("take started", core.startRecording() == 0))
        return false;
    runTake(library, host, core);
    const Keys take = node->keys;
    std::printf("keys: %zu\n", take.size());
    bool isGood = report("one key per frame", isWhole(take, host.getFrameRate()));

    isGood &= report("one undo removes it", host.undo() && node->keys.empty());
    isGood &= report("one redo restores it", host.redo() && node->keys == take);

    const std::int32_t code = core.resimulate(0.0, host.getTime());
    isGood &= report("simulated again, the same", code == 0 && isSame(take, node->keys));
    return isGood;
}

// Saves the tool as a model, and loads that as a second tool.
bool passOn(const std::string& tool, MVR::CoreModels& models, MVR::CoreFaults& faults) {
    const std::string file =
        (std::filesystem::temp_directory_path() / "small_adaptor.prm").string();
    const bool isSaved = report("saved as a model", models.save(tool, file), faults);
    return isSaved && report("the model loaded", models.load(file, ""), faults);
}

bool run(const Library& library, SmallHost& host, MVR::CoreInterface& core) {
    MVR::CoreTools* const tools = MVR::getTools(core);
    MVR::CoreModels* const models = MVR::getModels(core);
    MVR::CoreFaults* const faults = MVR::getFaults(core);
    if (!report("a core with all extensions",
                tools != nullptr && models != nullptr && faults != nullptr))
        return false;
    ToolList list(*tools);
    if (!report("listening", list.listenTo(&core) == 0))
        return false;
    std::string name;
    const std::int32_t code = tools->create("Follower", "", "", pendulumBindings(), &name);
    return report("tool placed", code, *faults) && recordAndSimulate(library, host, core) &&
           passOn(name, *models, *faults) && report("notified of two changes", list.changes == 2);
}

} // namespace

MVR_EXPORT int recordTake(const char* coreLibraryOrNull) {
    Library library;
    if (!load(coreLibraryOrNull != nullptr ? coreLibraryOrNull : MIRVANE_CORE_LIBRARY, library))
        return 2;
    bool isGood = false;
    {
        SmallHost host; // must outlive detach, which returns 0 here: no call of the core's is open
        if (MVR::CoreInterface* const core = library.attach(&host)) {
            isGood = run(library, host, *core);
            isGood = report("detached", library.detach(core) == 0) && isGood;
        }
    }
    dlclose(library.handle);
    return isGood ? 0 : 1;
}
