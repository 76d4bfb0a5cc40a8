// A tool: "Follower" moves a helper object along x by its input "Position". This file holds all
// that the core needs to know about a kind of tool.

#include "core/base/sdk/export.h"
#include "core/contract/adaptor_interface.h"
#include "plugins/contract/c_camera.h"
#include "plugins/contract/c_camera_plugin.h"
#include "plugins/contract/c_interface.h"
#include "plugins/contract/scoped_snapshot.h"
#include "unidevice/sdk/control.h"
#include "unidevice/sdk/property.h"

#include <cstdint>
#include <string>

namespace {

// The host names the tool's object by the name of the tool, followed by this.
const char* const kNodeName = "Target";

// One placed tool.
class Follower final : public MVR::CCamera {
public:
    using CCamera::CCamera;

    // Inputs are added here, so that the bindings of a saved scene find them.
    std::int32_t init() override {
        position_ = getInterface()->addProperty(
            "Position", UniDevice::trinary | UniDevice::finite | UniDevice::infinite, nullptr);
        return 0;
    }

    // A new tool creates its object; one from a saved scene finds it there.
    std::int32_t create() override {
        return hasNode(getInterface()->createNode(kNodeName, MVR::kNodeHelper, 0));
    }
    std::int32_t load() override { return hasNode(getInterface()->createNode(kNodeName)); }

    // One frame of a take, or of a simulation from the stored input: both read the same property.
    void record(double time) override {
        if (const MVR::ScopedTransform transform{getInterface(), node_, time}) {
            double position[3];
            transform->getPosition(position);
            position[0] = position_->getValue();
            transform->setPosition(position); // this sets the key
        }
    }

private:
    // Any code but 0 stops the creation, and the core informs the user.
    std::int32_t hasNode(MVR::SceneNode* node) {
        node_ = node;
        return node_ != nullptr ? 0 : 1;
    }

    UniDevice::Property* position_ = nullptr; // the core's
    MVR::SceneNode* node_ = nullptr;          // the host's
};

// What the core knows about the tool before one is placed.
class FollowerPlugin final : public MVR::CCameraPlugin {
public:
    MVR::CCamera* create(MVR::CCamera::CreateParam* param) override { return new Follower(param); }
    std::string getName() override { return "Follower"; }
    std::string getDescription() override { return "Moves an object along one axis"; }
    std::string getCategory() override { return "Objects"; }
    std::int32_t getVersion() override { return 1000; } // 1.0.0
};

} // namespace

MVR_EXPORT std::int32_t getVersion() {
    return MVR::kPluginInterfaceVersion;
}

// Called with 0, 1, 2, ... until the result is null. The core owns the results.
MVR_EXPORT MVR::CCameraPlugin* getPlugin(std::int32_t index) {
    return index == 0 ? new FollowerPlugin : nullptr;
}
