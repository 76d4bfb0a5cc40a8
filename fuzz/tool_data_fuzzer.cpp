// Saved tools of any bytes in a host: they load as far as they go, are written and load again, go
// with an undo, come back with a redo, and leave nothing behind.

#include "core/core_implementation.h"
#include "core/entry.h"
#include "core/log.h"
#include "input_file.h"
#include "instance/plugin_instance.h"
#include "plugins/c_camera_plugin.h"
#include "plugins/core_library.h"
#include "plugins/instance_reference.h"
#include "plugins/plugin.h"
#include "support/test_adaptor.h"
#include "unidevice/control.h"

#include <cstdlib>
#include <string>

namespace {

using namespace MVR;

void require(bool holds) {
    if (!holds)
        std::abort();
}

/// Has one of each thing that saved data can hold.
class Rig final : public CCamera {
public:
    using CCamera::CCamera;

    std::int32_t init() override {
        CInterface& door = *getInterface();
        door.addProperty("Move", UniDevice::finite, nullptr);
        door.beginPanel();
        door.addSpinner("Speed", "", &speed_, 0, 10, 1, 0, false, 0, nullptr);
        door.addSpinnerInt("Count", "", &count_, 0, 10, 1, 0, false, 0, nullptr);
        door.addCheck("On", "", &isOn_, nullptr);
        door.addText("Label", "", &label_, nullptr);
        door.addCombo("Way", "", {"there", "back"}, &way_, nullptr);
        door.endPanel();
        return 0;
    }
    std::int32_t create() override { return load(); }
    std::int32_t load() override {
        const void* bytes = nullptr;
        const std::int32_t size = getInterface()->getSaveData(&bytes);
        // Each byte must be there.
        for (std::int32_t i = 0; i < size; ++i)
            sum_ = sum_ + static_cast<const unsigned char*>(bytes)[i];
        return getInterface()->createNode("Node", 0, 0) != nullptr ? 0 : 1;
    }

private:
    double speed_ = 1;
    std::int32_t count_ = 1;
    bool isOn_ = true;
    std::string label_;
    std::string way_ = "there";
    volatile unsigned sum_ = 0;
};

class RigPlugin final : public CCameraPlugin {
public:
    CCamera* create(CCamera::CreateParam* param) override { return new Rig(param); }
    std::string getName() override { return "Rig"; }
    std::string getDescription() override { return "Has one of each"; }
    std::string getCategory() override { return "Tests"; }
};

/// Attached as long as the process runs.
struct Host {
    Host() {
        setenv("MIRVANE_REGISTRY", writeInput(nullptr, 0).c_str(), 1); // no folders
        libraryLoaded(Platform::ownModule());
        std::int32_t error = 0;
        require(Plugin::create(CoreLibrary::instance(), new RigPlugin, error) != nullptr);
        core = static_cast<CoreImplementation*>(attachAdaptor(&adaptor));
        require(core != nullptr);
        Log::setThreshold(Log::Critical); // else the log of refusals fills the memory
    }

    MVR::Testing::RecordingAdaptor adaptor;
    CoreImplementation* core = nullptr;
};

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    static Host& host = *new Host;
    CoreImplementation& core = *host.core;
    core.loadConfiguration(Tag(std::string(reinterpret_cast<const char*>(data), size)));
    const std::size_t count = core.getInstances(false).size();
    for (PluginInstance* tool : core.getInstances(false))
        tool->applyInputProfile(tool->getInputProfile("again"));

    const Tag written = core.getConfiguration();
    core.deleteAllInstances();
    core.loadConfiguration(written);
    require(core.getInstances(false).size() == count);
    core.getDetachedConfiguration();

    while (host.adaptor.undo()) {
    }
    require(core.getInstances(false).empty());
    while (host.adaptor.redo()) {
    }
    require(core.getInstances(false).size() == count);
    core.deleteAllInstances();
    host.adaptor.clearUndo();
    host.adaptor.nodes.clear();
    host.adaptor.calls.clear();
    return 0;
}
