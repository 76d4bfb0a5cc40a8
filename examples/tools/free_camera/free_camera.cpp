// "Free Camera": a camera that the artist flies.
//
// Its seven inputs are velocities, so that a stick at rest leaves the camera as it is. The tool
// keeps the pose between frames: it reads it from the scene when a take starts, and moves it by one
// frame's worth at each record(). "Zoom" does the same with the lens, once it is touched.

#include "core/base/sdk/export.h"
#include "core/contract/adaptor_interface.h"
#include "plugins/contract/c_camera_plugin.h"
#include "plugins/contract/c_interface.h"
#include "plugins/contract/scoped_snapshot.h"
#include "unidevice/sdk/control.h"

#include <cmath>

namespace {

constexpr std::int32_t kNoNode = 1; // the code of a failed step: anything but 0
// A velocity may come from anything: a key, a hat switch, a stick, a wheel.
constexpr std::int32_t kKinds =
    UniDevice::binary | UniDevice::trinary | UniDevice::finite | UniDevice::infinite;
// Stored takes hold the inputs by their positions: add a new one at the end.
constexpr int kZoom = 6;
constexpr int kInputs = 7;
// In millimetres per second. A resimulation reads the stored input at times that were rounded anew,
// and so may see a trace of the next frame.
constexpr double kLeastRate = 1e-6;
constexpr double kShortestMm = 1;
constexpr double kLongestMm = 10000;
constexpr double kRadiansPerDegree = 3.14159265358979323846 / 180.0;

struct Quaternion {
    double x = 0;
    double y = 0;
    double z = 0;
    double w = 1;
};

// First `b`, then `a`: with `a` the camera's rotation, `b` turns about the camera's own axes.
Quaternion multiply(const Quaternion& a, const Quaternion& b) {
    return {a.w * b.x + a.x * b.w + a.y * b.z - a.z * b.y,
            a.w * b.y - a.x * b.z + a.y * b.w + a.z * b.x,
            a.w * b.z + a.x * b.y - a.y * b.x + a.z * b.w,
            a.w * b.w - a.x * b.x - a.y * b.y - a.z * b.z};
}

Quaternion normalised(const Quaternion& q) {
    const double length = std::sqrt(q.x * q.x + q.y * q.y + q.z * q.z + q.w * q.w);
    return length > 0 ? Quaternion{q.x / length, q.y / length, q.z / length, q.w / length}
                      : Quaternion{};
}

// A turn about the axis (x, y, z) by its length in radians.
Quaternion turn(double x, double y, double z) {
    const double angle = std::sqrt(x * x + y * y + z * z);
    const double part = angle > 0 ? std::sin(angle / 2) / angle : 0.5;
    return {x * part, y * part, z * part, std::cos(angle / 2)};
}

class FreeCamera final : public MVR::CCamera {
public:
    using MVR::CCamera::CCamera;

    std::int32_t init() override {
        static const char* const names[kInputs] = {"Move X", "Move Y", "Move Z", "Pan",
                                                   "Tilt",   "Roll",   "Zoom"};
        for (int i = 0; i < kInputs; ++i)
            inputs_[i] = getInterface()->addProperty(names[i], kKinds, nullptr);
        return 0;
    }

    std::int32_t create() override {
        node_ = getInterface()->createNode("Camera", MVR::kNodeCamera, 0);
        if (node_ == nullptr)
            return kNoNode;
        node_->setName(getName());
        return 0;
    }

    std::int32_t load() override {
        node_ = getInterface()->createNode("Camera");
        return node_ != nullptr ? 0 : kNoNode;
    }

    // The flight begins at the camera's present pose.
    void startRecording(double time) override {
        isZooming_ = false;
        if (const MVR::ScopedTransform transform{getInterface(), node_, time}) {
            double rotation[4];
            transform->getPosition(position_);
            transform->getRotation(rotation);
            rotation_ = normalised({rotation[0], rotation[1], rotation[2], rotation[3]});
        }
    }

    void record(double time) override {
        const double seconds = getInterface()->getFrameStep();
        move(seconds);
        if (const MVR::ScopedTransform transform{getInterface(), node_, time}) {
            const double rotation[4] = {rotation_.x, rotation_.y, rotation_.z, rotation_.w};
            transform->setPosition(position_);
            transform->setRotation(rotation);
        }
        zoom(time, seconds);
    }

private:
    // Scene time counts, not the clock, so a resimulation flies the same path.
    void move(double seconds) {
        const double radians = kRadiansPerDegree * seconds;
        rotation_ = normalised(multiply(rotation_, turn(inputs_[4]->getValue() * radians,
                                                        inputs_[3]->getValue() * radians,
                                                        inputs_[5]->getValue() * radians)));
        const Quaternion way = {inputs_[0]->getValue() * seconds, inputs_[1]->getValue() * seconds,
                                inputs_[2]->getValue() * seconds, 0};
        const Quaternion back = {-rotation_.x, -rotation_.y, -rotation_.z, rotation_.w};
        const Quaternion turned = multiply(multiply(rotation_, way), back);
        position_[0] += turned.x;
        position_[1] += turned.y;
        position_[2] += turned.z;
    }

    // The lens gets a key in each frame in which it moves, and one in the frame before, which holds
    // it up to there. So a lens that nobody touches gets none, and a resimulation, which can't know
    // what was bound, sets the same keys again.
    void zoom(double time, double seconds) {
        const double rate = inputs_[kZoom]->getValue();
        const bool isTouched = std::fabs(rate) > kLeastRate;
        const bool isStarting = isTouched && !isZooming_;
        isZooming_ = isTouched;
        if (isStarting) {
            if (const MVR::ScopedLens lens{getInterface(), node_, time - seconds}) {
                focalLengthMm_ = lens->getFocalLengthMm();
                lens->setFocalLengthMm(focalLengthMm_);
            }
        }
        if (isZooming_) {
            focalLengthMm_ =
                std::fmin(std::fmax(focalLengthMm_ + rate * seconds, kShortestMm), kLongestMm);
            if (const MVR::ScopedLens lens{getInterface(), node_, time})
                lens->setFocalLengthMm(focalLengthMm_);
        }
    }

    UniDevice::Property* inputs_[kInputs] = {}; // the core's
    MVR::SceneNode* node_ = nullptr;            // the host's
    double position_[3] = {};
    Quaternion rotation_;
    double focalLengthMm_ = 0; // while it zooms
    bool isZooming_ = false;
};

class FreeCameraPlugin final : public MVR::CCameraPlugin {
public:
    MVR::CCamera* create(MVR::CCamera::CreateParam* param) override {
        return new FreeCamera(param);
    }
    std::string getName() override { return "Free Camera"; }
    std::string getKey() override { return "examples/free_camera"; }
    std::string getDescription() override {
        return "A camera that is flown by velocities, and zooms";
    }
    std::string getCategory() override { return "Cameras;Examples"; }
    std::string getAbout() override {
        return "Moves along its own axes (x right, y up, z back) in units a second, and turns "
               "about them (pan about y, tilt about x, roll about z) in degrees a second. Zoom "
               "makes the lens longer, in millimetres a second.";
    }
    std::string getAuthor() override { return "Mirvane"; }
};

} // namespace

MVR_EXPORT std::int32_t getVersion() {
    return MVR::kPluginInterfaceVersion;
}

MVR_EXPORT MVR::CCameraPlugin* getPlugin(std::int32_t index) {
    return index == 0 ? new FreeCameraPlugin : nullptr;
}
