#include "small_node.h"

#include "plugins/contract/c_undo.h"
#include "small_host.h"

#include <algorithm>
#include <cmath>
#include <iterator>
#include <utility>

namespace {

// An entry of the undo list: the keys before a take or, once undone, those after it.
class KeysUndo final : public MVR::CUndo {
public:
    explicit KeysUndo(SmallNode& node) : node_(node), other_(node.keys) {}
    void restore(bool isUndo) override {
        if (isUndo)
            std::swap(node_.keys, other_);
        else
            node_.keys = other_;
    }
    void redo() override { std::swap(node_.keys, other_); }

private:
    SmallNode& node_;
    Keys other_;
};

} // namespace

SmallNode::SmallNode(SmallHost& host, std::string name, MVR::CInterface* tool)
    : SceneNode(name, tool), host_(host), hostName_(std::move(name)) {
    transformHandler_ = this;
}

long SmallNode::frameAt(double time) const {
    return std::lround(time * host_.getFrameRate());
}

Position SmallNode::at(double time) const {
    const auto after = keys.upper_bound(frameAt(time));
    return after != keys.begin() ? std::prev(after)->second : rest;
}

void SmallNode::release(MVR::SceneNode* handle) {
    if (handle == this)
        owner_ = nullptr; // the tool ends, the object stays in the scene
}

MVR::TransformSnapshot* SmallNode::getSnapshot(double time) {
    snapshotTime_ = time;
    return this;
}

void SmallNode::startRecording(double time) {
    host_.addUndo(new KeysUndo(*this));
    keys.erase(keys.upper_bound(frameAt(time)), keys.end());
}

void SmallNode::get(double matrix[16]) {
    const Position position = at(snapshotTime_);
    for (int index = 0; index < 16; ++index)
        matrix[index] = index % 5 == 0 ? 1.0 : 0.0;
    std::copy(position.begin(), position.end(), matrix + 12);
}

void SmallNode::set(const double matrix[16]) {
    setPosition(matrix + 12);
}

void SmallNode::getPosition(double position[3]) {
    const Position present = at(snapshotTime_);
    std::copy(present.begin(), present.end(), position);
}

// Sets a key while a take runs, otherwise the position at rest.
void SmallNode::setPosition(const double position[3]) {
    const Position written = {position[0], position[1], position[2]};
    if (host_.isRecording())
        keys[frameAt(snapshotTime_)] = written;
    else
        rest = written;
}

void SmallNode::getRotation(double quaternion[4]) {
    const double none[4] = {0.0, 0.0, 0.0, 1.0};
    std::copy(none, none + 4, quaternion);
}
