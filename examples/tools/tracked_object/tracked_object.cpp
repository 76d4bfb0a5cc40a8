// "Tracked Object": an object with the pose that a tracking device reports.
//
// The smallest useful tool: seven inputs, one scene object, one key per frame. Position and
// rotation are absolute and are written as they arrive, so give its inputs a dead zone of 0. Only
// the sign of a quaternion may change: q and -q are the same rotation, and trackers jump from one
// to the other, but between keys of both a curve would go through zero. A model or a saved scene
// may ask for a camera or a light instead of a plain object, in the tool's own element:
// <customdata><kind>camera</kind></customdata>.

#include "core/base/sdk/export.h"
#include "core/contract/adaptor_interface.h"
#include "data/sdk/tag.h"
#include "plugins/contract/c_camera_plugin.h"
#include "plugins/contract/c_interface.h"
#include "plugins/contract/extension_ids.h"
#include "plugins/contract/scoped_snapshot.h"
#include "unidevice/sdk/control.h"

namespace {

constexpr std::int32_t kNoNode = 1; // the code of a failed step: anything but 0
constexpr std::int32_t kKinds = UniDevice::finite | UniDevice::infinite;

struct ObjectKind {
    const char* word;
    std::intptr_t kind;
};
// The first is the default.
constexpr ObjectKind kObjectKinds[] = {
    {"object", MVR::kNodeHelper}, {"camera", MVR::kNodeCamera}, {"light", MVR::kNodeLight}};

class TrackedObject final : public MVR::CCamera {
public:
    using MVR::CCamera::CCamera;

    // The tool's own data in a file. It is restored before init().
    std::intptr_t extend(std::int32_t id, std::intptr_t data) override {
        auto* const tag = reinterpret_cast<MVR::Tag*>(data);
        if (id == MVR::ToolExtension::kGetCustomData && objectKind_ != kObjectKinds) {
            *tag = MVR::Tag::element("customdata");
            tag->addChild(MVR::Tag::element("kind", objectKind_->word));
        } else if (id == MVR::ToolExtension::kSetCustomData) {
            for (const ObjectKind& known : kObjectKinds)
                if (tag->child("kind").value() == known.word)
                    objectKind_ = &known;
        }
        return 0;
    }

    // Properties are added in init(), so that they exist when saved bindings are looked up.
    // The core owns them; they live as long as this tool.
    std::int32_t init() override {
        static const char* const positionNames[3] = {"Position X", "Position Y", "Position Z"};
        static const char* const rotationNames[4] = {"Rotation X", "Rotation Y", "Rotation Z",
                                                     "Rotation W"};
        for (int i = 0; i < 3; ++i)
            position_[i] = getInterface()->addProperty(positionNames[i], kKinds, nullptr);
        for (int i = 0; i < 4; ++i)
            rotation_[i] = getInterface()->addProperty(rotationNames[i], kKinds, nullptr);
        return 0;
    }

    // A new tool creates its object, which has the name of the tool in the scene.
    std::int32_t create() override {
        node_ = getInterface()->createNode("Object", objectKind_->kind, 0);
        if (node_ == nullptr)
            return kNoNode;
        node_->setName(getName());
        return 0;
    }

    // A tool from a saved scene finds its object there.
    std::int32_t load() override {
        node_ = getInterface()->createNode("Object");
        return node_ != nullptr ? 0 : kNoNode;
    }

    // The first quaternion is on the side of the object's present one, which the take's key at its
    // start holds.
    void startRecording(double time) override {
        if (const MVR::ScopedTransform transform{getInterface(), node_, time})
            transform->getRotation(before_);
    }

    // One frame of a take or of a resimulation: the properties read the live device in the one, the
    // recorded values in the other.
    void record(double time) override {
        const MVR::ScopedTransform transform{getInterface(), node_, time};
        if (!transform)
            return;
        const double position[3] = {position_[0]->getValue(), position_[1]->getValue(),
                                    position_[2]->getValue()};
        double rotation[4] = {rotation_[0]->getValue(), rotation_[1]->getValue(),
                              rotation_[2]->getValue(), rotation_[3]->getValue()};
        // Nothing is bound, or the device hasn't sent yet: four zeros are no rotation.
        if (rotation[0] == 0 && rotation[1] == 0 && rotation[2] == 0 && rotation[3] == 0)
            rotation[3] = 1;
        keepSide(rotation);
        transform->setPosition(position);
        transform->setRotation(rotation);
    }

private:
    // Turns the quaternion to the side of the one before.
    void keepSide(double (&rotation)[4]) {
        double cosine = 0;
        for (int i = 0; i < 4; ++i)
            cosine += rotation[i] * before_[i];
        for (int i = 0; i < 4; ++i) {
            rotation[i] = cosine < 0 ? -rotation[i] : rotation[i];
            before_[i] = rotation[i];
        }
    }

    UniDevice::Property* position_[3] = {};
    UniDevice::Property* rotation_[4] = {};
    double before_[4] = {};          // the latest quaternion; as written
    MVR::SceneNode* node_ = nullptr; // the host's
    const ObjectKind* objectKind_ = kObjectKinds;
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
        return "Takes an absolute position and rotation (a quaternion) and writes both as "
               "they come in. The object may be a camera or a light.";
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
