#include "stage/scene/stage_node.h"

#include "core/contract/adaptor_interface.h"
#include "plugins/contract/extension_ids.h"
#include "stage/scene/scene.h"
#include "stage/scene/undo_list.h"

#include <algorithm>
#include <cmath>
#include <utility>

namespace Stage {

namespace {

/// A scale that went through a matrix is rounded, which isn't a change.
bool isSameScale(const Vector3& a, const Vector3& b) {
    constexpr double kRounding = 1e-9;
    return std::equal(a.begin(), a.end(), b.begin(), [](double left, double right) {
        return std::fabs(left - right) <= kRounding * std::fmax(std::fabs(left), 1.0);
    });
}

} // namespace

StageNode::StageNode(Scene& scene, std::string name, MVR::CInterface* owner, std::intptr_t kind)
    : SceneNode(std::move(name), owner), scene_(scene), kind_(kind) {
    meshHandler_ = &scene.getMeshHandler();
    transformHandler_ = &scene.getTransformHandler();
}

StageNode::StageNode(Scene& scene, NodeRecord record)
    : StageNode(scene, std::move(record.name), nullptr, record.kind) {
    hostName_ = std::move(record.sceneName);
    savedOwner_ = std::move(record.tool);
    rest_ = record.rest;
    lens_ = record.lens;
    curves_ = std::move(record.curves);
    mesh_ = std::move(record.mesh);
    isVisible_ = record.isVisible;
    highPolyNames_ = std::move(record.highPolyNames);
}

std::intptr_t StageNode::extend(std::int32_t code, std::intptr_t data) {
    (void)data;
    namespace Command = MVR::NodeCommand;
    if (code == Command::kOpenSelection)
        scene_.clearSelection();
    return code == Command::kOpenSelection || code == Command::kCloseSelection ? 1 : 0;
}

void StageNode::show() {
    change(&StageNode::isVisible_, true);
}

void StageNode::hide() {
    change(&StageNode::isVisible_, false);
}

void StageNode::select() {
    scene_.select(*this);
}

MVR::SceneNode* StageNode::getParent() {
    return parent_ != nullptr ? parent_->toHandle() : nullptr;
}

std::int32_t StageNode::getChildCount() {
    return static_cast<std::int32_t>(children_.size());
}

MVR::SceneNode* StageNode::getChild(std::int32_t index) {
    if (index < 0 || index >= getChildCount())
        return nullptr;
    return children_[static_cast<std::size_t>(index)]->toHandle();
}

MVR::SceneNode* StageNode::toHandle() {
    ++handles_;
    return this;
}

void StageNode::release(MVR::SceneNode* handle) {
    if (handle == nullptr)
        return;
    auto* node = static_cast<StageNode*>(handle);
    if (node->handles_ > 0)
        --node->handles_;
    else if (node == this)
        owner_ = nullptr; // not undone: nothing restores this tool
}

std::intptr_t StageNode::bindTest(MVR::CInterface* tool, std::string name) {
    return owner_ != tool || name_ != name ? 1 : 0;
}

MVR::TransformAccess* StageNode::getTransformAccess(double time) {
    return access_.open(time);
}

MVR::VisibilityController* StageNode::getVisibilityController(double time) {
    (void)time;
    return nullptr; // Visibility isn't animated here.
}

void StageNode::setVisibilityController(MVR::VisibilityController* controller) {
    (void)controller; // there are none
}

void StageNode::releaseTransformAccess(MVR::TransformAccess* access) {
    if (access == &access_)
        access_.close();
}

void StageNode::setParent(MVR::SceneNode* node) {
    auto* parent = static_cast<StageNode*>(node);
    for (const StageNode* above = parent; above != nullptr; above = above->parent_)
        if (above == this)
            return; // A node can't hang below itself.
    if (parent == parent_)
        return;
    const double time = 0.0; // if a parent is animated, the pose in the world stays the same then
    const auto globalOf = [time](const StageNode* above) {
        return above != nullptr ? above->evaluateGlobal(time) : toMatrix(Transform());
    };
    const Matrix before = globalOf(parent_);
    const Matrix after = globalOf(parent);
    scene_.hang(*this, parent);
    if (before != after) { // else rounding would move it for nothing
        const Matrix place = multiply(toMatrix(rest_), before);
        setRest(toTransform(multiply(place, inverse(after))));
    }
}

void StageNode::setName(std::string name) {
    std::string unique = scene_.uniqueName(std::move(name), this);
    if (unique == hostName_)
        return;
    if (scene_.getUndo().isOpen()) {
        const auto self = shared_from_this();
        scene_.getUndo().add([self, old = hostName_] { self->rename(old); },
                             [self, unique] { self->rename(unique); });
    }
    rename(unique);
}

void StageNode::destroy(std::int32_t deleteScene) {
    if (deleteScene != 0)
        scene_.remove(*this);
    else
        setOwner(nullptr);
}

MVR::SceneNode* StageNode::duplicate(std::int32_t flag) {
    (void)flag;
    StageNode* copy = scene_.create(name_, nullptr, kind_, parent_);
    copy->rest_ = rest_;
    copy->lens_ = lens_;
    copy->curves_ = curves_;
    copy->mesh_ = mesh_;
    copy->isVisible_ = isVisible_;
    copy->setName(hostName_);
    return copy->toHandle();
}

MVR::MeshSnapshot* StageNode::getMeshSnapshot(double time) {
    (void)time; // Meshes don't change with time.
    return mesh_ != nullptr ? &meshSnapshot_ : nullptr;
}

MVR::HelperSnapshot* StageNode::getHelperSnapshot() {
    return kind_ == MVR::kNodeHelper ? &helper_ : nullptr;
}

std::intptr_t StageNode::getLensSnapshot(double time) {
    return MVR::LensSnapshot::toHandle(hasLens() ? lensSnapshot_.open(time) : nullptr);
}

void StageNode::startRecording(double time) {
    const auto held = std::make_shared<Curves>(curves_);
    const auto swap = [self = shared_from_this(), held] { std::swap(self->curves_, *held); };
    scene_.getUndo().add(swap, swap);

    // The key at the start holds the old value, so that animation before it keeps its form and a
    // resimulation from here starts from the same pose.
    const Transform start = evaluate(time);
    for (std::size_t i = 0; i < kFirstLensCurve; ++i)
        curves_[i].eraseFrom(time);
    setKeys(time, 0, start.position.data(), start.position.size());
    setKeys(time, kFirstRotationCurve, start.rotation.data(), start.rotation.size());
    startLens(time);
}

void StageNode::startLens(double time) {
    const Lens start = evaluateLens(time);
    for (std::size_t i = 0; i < start.size(); ++i) {
        Curve& curve = curves_[kFirstLensCurve + i];
        curve.eraseFrom(time);
        // Few takes write to a lens: an unchanged one gets no key.
        if (curve.evaluate(time, lens_[i]) != start[i])
            curve.setKey(time, start[i]);
    }
}

std::intptr_t StageNode::firstExtension(double time) {
    (void)time;
    return 0; // the stage doesn't use extension 38
}

void StageNode::secondExtension(std::intptr_t data) {
    (void)data; // nor extension 39
}

Quaternion StageNode::evaluateRotation(double time) const {
    Quaternion from;
    Quaternion to;
    double fraction = 0.0;
    bool isAnimated = false;
    for (std::size_t i = 0; i < from.size(); ++i) {
        const Curve& curve = curves_[kFirstRotationCurve + i];
        if (curve.isEmpty()) {
            from[i] = to[i] = rest_.rotation[i];
            continue;
        }
        // The four are written together, so they are in the same span.
        const Curve::Span span = curve.spanAt(time);
        from[i] = span.from->value;
        to[i] = span.to->value;
        fraction = span.fraction;
        isAnimated = true;
    }
    return isAnimated ? slerp(from, to, fraction) : rest_.rotation;
}

Transform StageNode::evaluate(double time) const {
    Transform result = rest_;
    for (std::size_t i = 0; i < result.position.size(); ++i)
        result.position[i] = curves_[i].evaluate(time, rest_.position[i]);
    result.rotation = evaluateRotation(time);
    return result;
}

Matrix StageNode::evaluateGlobal(double time) const {
    Matrix global = toMatrix(evaluate(time));
    for (const StageNode* node = parent_; node != nullptr; node = node->parent_)
        global = multiply(global, toMatrix(node->evaluate(time)));
    return global;
}

bool StageNode::hasLens() const {
    return kind_ == MVR::kNodeCamera;
}

Lens StageNode::evaluateLens(double time) const {
    Lens result;
    for (std::size_t i = 0; i < result.size(); ++i)
        result[i] = curves_[kFirstLensCurve + i].evaluate(time, lens_[i]);
    return result;
}

void StageNode::setKeys(double time, std::size_t firstCurve, const double* values,
                        std::size_t count) {
    for (std::size_t i = 0; i < count; ++i)
        curves_[firstCurve + i].setKey(time, values[i]);
}

bool StageNode::record(double time, std::size_t firstCurve, const double* values,
                       std::size_t count) {
    if (!scene_.isRecording())
        return false;
    setKeys(time, firstCurve, values, count);
    scene_.notifyKey(*this, time);
    return true;
}

void StageNode::setPosition(double time, const Vector3& position) {
    if (record(time, 0, position.data(), position.size()))
        return;
    Transform rest = rest_;
    rest.position = position;
    setRest(rest);
}

void StageNode::setRotation(double time, const Quaternion& rotation) {
    if (record(time, kFirstRotationCurve, rotation.data(), rotation.size()))
        return;
    Transform rest = rest_;
    rest.rotation = rotation;
    setRest(rest);
}

void StageNode::setTransform(double time, const Transform& transform) {
    setPosition(time, transform.position);
    setRotation(time, transform.rotation);
    Transform rest = rest_;
    rest.scale = transform.scale;
    if (!isSameScale(rest.scale, rest_.scale))
        setRest(rest);
}

void StageNode::setLens(double time, LensPart part, double value) {
    if (!isLensNumber(value) || record(time, kFirstLensCurve + part, &value, 1))
        return;
    Lens lens = lens_;
    lens[part] = value;
    change(&StageNode::lens_, lens);
}

void StageNode::setRest(const Transform& rest) {
    if (isFinite(rest)) // a scene's file with any other couldn't be read
        change(&StageNode::rest_, rest);
}

void StageNode::setMesh(SharedMesh mesh) {
    if (mesh != nullptr && mesh->vertices.empty())
        mesh = nullptr;
    change(&StageNode::mesh_, std::move(mesh));
}

void StageNode::setOwner(MVR::CInterface* owner) {
    change(&StageNode::owner_, owner);
    change(&StageNode::savedOwner_, std::string());
}

template <typename Class, typename Value>
void StageNode::change(Value Class::*member, Value value) {
    if (this->*member == value)
        return;
    if (scene_.getUndo().isOpen()) {
        const auto self = shared_from_this();
        scene_.getUndo().add([self, member, old = this->*member] { (*self).*member = old; },
                             [self, member, value] { (*self).*member = value; });
    }
    this->*member = std::move(value);
}

void StageNode::rename(const std::string& name) {
    const bool isInScene = scene_.forgetName(*this);
    hostName_ = name;
    if (isInScene)
        scene_.noteName(*this);
}

std::size_t StageNode::getIndex() const {
    if (parent_ == nullptr)
        return 0;
    const auto& siblings = parent_->children_;
    return static_cast<std::size_t>(std::find(siblings.begin(), siblings.end(), this) -
                                    siblings.begin());
}

void StageNode::hangBelow(StageNode* parent, std::size_t index) {
    if (parent_ != nullptr)
        std::erase(parent_->children_, this);
    parent_ = parent;
    if (parent != nullptr) {
        auto& siblings = parent->children_;
        siblings.insert(
            siblings.begin() + static_cast<std::ptrdiff_t>(std::min(index, siblings.size())), this);
    }
}

} // namespace Stage
