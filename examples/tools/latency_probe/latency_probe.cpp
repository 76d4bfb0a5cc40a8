// "Latency Probe": passes a number from the input to the host, frame by frame.
//
// Bind its one property to a control that carries the sender's clock. The host finds that time in
// the x of the probe's object when the key is written, and so knows how long the packet was on its
// way from the sender to the key.

#include "core/base/sdk/export.h"
#include "core/contract/adaptor_interface.h"
#include "plugins/contract/c_camera_plugin.h"
#include "plugins/contract/c_interface.h"
#include "plugins/contract/scoped_snapshot.h"
#include "unidevice/sdk/control.h"

namespace {

class LatencyProbe final : public MVR::CCamera {
public:
    using MVR::CCamera::CCamera;

    std::int32_t init() override {
        sent_ =
            getInterface()->addProperty("Sent", UniDevice::finite | UniDevice::infinite, nullptr);
        return 0;
    }

    std::int32_t create() override {
        node_ = getInterface()->createNode("Probe", MVR::kNodeHelper, 0);
        return node_ != nullptr ? 0 : 1;
    }

    std::int32_t load() override {
        node_ = getInterface()->createNode("Probe");
        return node_ != nullptr ? 0 : 1;
    }

    void record(double time) override {
        if (const MVR::ScopedTransform transform{getInterface(), node_, time}) {
            const double position[3] = {sent_->getValue(), 0, 0};
            transform->setPosition(position);
        }
    }

private:
    UniDevice::Property* sent_ = nullptr; // the core's
    MVR::SceneNode* node_ = nullptr;      // the host's
};

class LatencyProbePlugin final : public MVR::CCameraPlugin {
public:
    MVR::CCamera* create(MVR::CCamera::CreateParam* param) override {
        return new LatencyProbe(param);
    }
    std::string getName() override { return "Latency Probe"; }
    std::string getKey() override { return "examples/latency_probe"; }
    std::string getDescription() override { return "Tells the host when a packet was sent"; }
    std::string getCategory() override { return "Measuring;Examples"; }
    std::string getAuthor() override { return "Mirvane"; }
};

} // namespace

MVR_EXPORT std::int32_t getVersion() {
    return MVR::kPluginInterfaceVersion;
}

MVR_EXPORT MVR::CCameraPlugin* getPlugin(std::int32_t index) {
    return index == 0 ? new LatencyProbePlugin : nullptr;
}
