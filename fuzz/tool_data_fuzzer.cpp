// Saved tools of any bytes in a host. They are loaded as far as possible, written and loaded again,
// removed by an undo and restored by a redo, and leave nothing behind.

#include "host.h"
#include "unidevice/sdk/control.h"

#include <string>

namespace {

using namespace MVR;

/// Has one of everything that saved data can hold.
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

struct RigHost : Host {
    RigHost() { addKind<Rig>("Rig"); }
};

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    static RigHost& host = *new RigHost;
    CoreImplementation& core = *host.core;
    core.loadConfiguration(Tag(std::string(reinterpret_cast<const char*>(data), size)));
    const std::size_t count = host.toolCount();
    for (PluginInstance* tool : core.getInstances(false))
        tool->applyInputProfile(tool->getInputProfile("again"));

    const Tag written = core.getConfiguration();
    core.deleteAllInstances();
    core.loadConfiguration(written);
    require(host.toolCount() == count);
    core.getDetachedConfiguration();

    host.undoAll();
    require(host.toolCount() == 0);
    host.redoAll();
    require(host.toolCount() == count);
    host.clear();
    return 0;
}
