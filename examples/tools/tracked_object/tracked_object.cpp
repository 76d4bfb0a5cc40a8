// "Tracked Object": an object that stands where a tracking device says it stands.
//
// The smallest useful tool: seven inputs, one scene object, one key a frame. Position and rotation
// are absolute and are written as they come in, so give its inputs a dead zone of 0.

#include "core/adaptor_interface.h"
#include "core/export.h"
#include "plugins/c_camera_plugin.h"
#include "plugins/c_interface.h"
#include "unidevice/control.h"

namespace {

constexpr std::int32_t kNoNode = 1; // the code of a failed step: anything but 0
constexpr std::int32_t kKinds = UniDevice::finite | UniDevice::infinite;

class TrackedObject final : public MVR::CCamera {
public:
    using MVR::CCamera::CCamera;

    // Properties are asked for in init(), so that they exist when saved bindings are looked up.
    // The core owns them; they live as long as this tool.
    std::int32_t init() override {
        static const char* const positionNames[3] = {"Position X", "Position Y", "Position Z"};
        static const char* const rotationNames[4] = {"Rotation X", "Rotation Y", "Rotation Z",
                                                     "Rotation W"};
        for (int i = 0; i < 3; ++i) {
            position_[i] = getInterface()->addProperty(positionNames[i], kKinds, nullptr);
        }
        for (int i = 0; i < 4; ++i) {
            rotation_[i] = getInterface()->addProperty(rotationNames[i], kKinds, nullptr);
        }
        return 0;
    }

    // A new tool: make the object, and call it in the scene as the tool is called.
    std::int32_t create() override {
        node_ = getInterface()->createNode("Object", MVR::kNodeHelper, 0);
        if (node_ == nullptr) {
            return kNoNode;
        }
        node_->setName(getName());
        return 0;
    }

    // A tool from a saved scene: the object is there already.
    std::int32_t load() override {
        node_ = getInterface()->createNode("Object");
        return node_ != nullptr ? 0 : kNoNode;
    }

    // One frame of a take or of a resimulation. Both look alike from here: the properties read the
    // live device in the one, the recorded values in the other.
    void record(double time) override {
        MVR::TransformSnapshot* snapshot = getInterface()->getSnapshot(node_, time);
        if (snapshot == nullptr) {
            return;
        }
        const double position[3] = {position_[0]->getValue(), position_[1]->getValue(),
                                    position_[2]->getValue()};
        double rotation[4] = {rotation_[0]->getValue(), rotation_[1]->getValue(),
                              rotation_[2]->getValue(), rotation_[3]->getValue()};
        // Nothing is bound, or the device hasn't sent yet: four zeros are no rotation.
        if (rotation[0] == 0 && rotation[1] == 0 && rotation[2] == 0 && rotation[3] == 0) {
            rotation[3] = 1;
        }
        snapshot->setPosition(position);
        snapshot->setRotation(rotation);
        getInterface()->nodeQuery5(node_); // gives the snapshot back
    }

private:
    UniDevice::Property* position_[3] = {};
    UniDevice::Property* rotation_[4] = {};
    MVR::SceneNode* node_ = nullptr; // the host's
};

class TrackedObjectPlugin final : public MVR::CCameraPlugin {
public:
    MVR::CCamera* create(MVR::CCamera::CreateParam* param) override {
        return new TrackedObject(param);
    }
    std::string getName() override { return "Tracked Object"; }
    std::string getKey() override { return "examples/tracked_object"; }
    std::string getDescription() override { return "An object that follows a tracking device"; }
    std::string getCategory() override { return "Objects;Examples"; }
    std::string getAbout() override {
        return "Takes an absolute position and rotation (a quaternion) and writes both as they "
               "come "
               "in.";
    }
    std::string getAuthor() override { return "Mirvane"; }
};

} // namespace

MVR_EXPORT std::int32_t getVersion() {
    return MVR::kPluginInterfaceVersion;
}

MVR_EXPORT MVR::CCameraPlugin* getPlugin(std::int32_t index) {
    return index == 0 ? new TrackedObjectPlugin : nullptr;
}
