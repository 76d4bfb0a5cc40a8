#include "support/test_node.h"

#include "instance/plugin_instance.h"

#include <algorithm>
#include <cstddef>

namespace MVR::Testing {

namespace {

// The last key at or before the time; zeros before the first.
template <std::size_t Size>
void readKey(const std::map<double, std::array<double, Size>>& keys, double time, double* out) {
    const auto after = keys.upper_bound(time);
    std::array<double, Size> value{};
    if (after != keys.begin())
        value = std::prev(after)->second;
    std::copy(value.begin(), value.end(), out);
}

} // namespace

void TestNode::release(SceneNode* handle) {
    if (handle != this) {
        --handles;
    } else if (resolved > 0) {
        --resolved;
    } else {
        if (owner_ != nullptr)
            lastTool = static_cast<PluginInstance*>(owner_)->getName();
        linked = false;
        owner_ = nullptr;
    }
}

void TestNode::setParent(SceneNode* node) {
    if (parent != nullptr)
        parent->children.erase(std::remove(parent->children.begin(), parent->children.end(), this),
                               parent->children.end());
    parent = static_cast<TestNode*>(node);
    if (parent != nullptr)
        parent->children.push_back(this);
}

SceneNode* TestNode::duplicate(std::int32_t) {
    copies.push_back(std::make_unique<TestNode>(name_ + " copy", nullptr));
    return give(copies.back().get());
}

void TestNode::destroy(std::int32_t deleteScene) {
    release(this);
    destroyed = deleteScene != 0;
}

TransformSnapshot* TestNode::getSnapshot(double time) {
    time_ = time;
    ++snapshots;
    return this;
}

HelperSnapshot* TestNode::getHelperSnapshot() {
    ++snapshots;
    return this;
}

MeshSnapshot* TestNode::getMeshSnapshot(double) {
    if (mesh.vertices.empty())
        return nullptr;
    ++snapshots;
    return this;
}

void TestNode::startRecording(double time) {
    positions.erase(positions.lower_bound(time), positions.end());
    rotations.erase(rotations.lower_bound(time), rotations.end());
}

void TestNode::get(double out[16]) {
    std::copy(matrix.begin(), matrix.end(), out);
    getPosition(out + 12);
}

void TestNode::set(const double values[16]) {
    std::copy(values, values + 16, matrix.begin());
    setPosition(values + 12);
}

void TestNode::getPosition(double position[3]) {
    readKey(positions, time_, position);
}

void TestNode::setPosition(const double position[3]) {
    std::copy(position, position + 3, positions[time_].begin());
}

void TestNode::getRotation(double quaternion[4]) {
    readKey(rotations, time_, quaternion);
}

void TestNode::setRotation(const double quaternion[4]) {
    std::copy(quaternion, quaternion + 4, rotations[time_].begin());
}

} // namespace MVR::Testing
