#include "stage/scene/node_snapshots.h"

#include "stage/scene/stage_node.h"

#include <algorithm>
#include <memory>

namespace Stage {

namespace {

Matrix toArray(const double matrix[16]) {
    Matrix result;
    std::copy_n(matrix, result.size(), result.begin());
    return result;
}

} // namespace

NodeTransform* NodeTransform::open(double time) {
    if (isOpen_)
        return nullptr;
    isOpen_ = true;
    time_ = time;
    return this;
}

void NodeTransform::get(double matrix[16]) {
    const Matrix local = toMatrix(node_.evaluate(time_));
    std::copy_n(local.begin(), local.size(), matrix);
}

void NodeTransform::set(const double matrix[16]) {
    node_.setTransform(time_, toTransform(toArray(matrix)));
}

void NodeTransform::getGlobal(double matrix[16]) {
    const Matrix global = node_.evaluateGlobal(time_);
    std::copy_n(global.begin(), global.size(), matrix);
}

void NodeTransform::setGlobal(const double matrix[16]) {
    Matrix local = toArray(matrix);
    if (const StageNode* parent = node_.getParentNode())
        local = multiply(local, inverse(parent->evaluateGlobal(time_)));
    node_.setTransform(time_, toTransform(local));
}

void NodeTransform::getPosition(double position[3]) {
    const Transform local = node_.evaluate(time_);
    std::copy_n(local.position.begin(), local.position.size(), position);
}

void NodeTransform::setPosition(const double position[3]) {
    node_.setPosition(time_, {position[0], position[1], position[2]});
}

void NodeTransform::getRotation(double quaternion[4]) {
    const Transform local = node_.evaluate(time_);
    std::copy_n(local.rotation.begin(), local.rotation.size(), quaternion);
}

void NodeTransform::setRotation(const double quaternion[4]) {
    node_.setRotation(time_, {quaternion[0], quaternion[1], quaternion[2], quaternion[3]});
}

NodeLens* NodeLens::open(double time) {
    if (isOpen_)
        return nullptr;
    isOpen_ = true;
    time_ = time;
    return this;
}

double NodeLens::get(LensPart part) const {
    return node_.evaluateLens(time_)[part];
}

void NodeLens::set(LensPart part, double value) {
    node_.setLens(time_, part, value);
}

void NodeMesh::get(MVR::CMesh& mesh) {
    mesh = *node_.getMesh();
}

void NodeHelper::set(const MVR::CMesh& mesh) {
    node_.setMesh(std::make_shared<const MVR::CMesh>(mesh));
}

} // namespace Stage
