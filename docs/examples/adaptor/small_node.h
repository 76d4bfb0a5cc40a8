// An object of the small host's scene: a position, at rest or as keys over time.
#pragma once

#include "plugins/contract/scene_node.h"

#include <array>
#include <cstdint>
#include <map>
#include <string>

class SmallHost;

using Position = std::array<double, 3>;
// By frame number: times of one frame may differ in their last digits.
using Keys = std::map<long, Position>;

// Node, snapshot of itself and handler in one, which is enough for a scene without rotations,
// meshes and visibility. The host owns it.
class SmallNode final : public MVR::SceneNode,
                        private MVR::TransformSnapshot,
                        private MVR::NodeTransformHandler {
public:
    SmallNode(SmallHost& host, std::string name, MVR::CInterface* tool);

    Keys keys;
    Position rest{};

    // Returns the position at `time`: that of the last key up to there, or the one at rest.
    Position at(double time) const;

    // The core calls these on every node. This host has a flat scene, so there are no parents.
    std::intptr_t extend(std::int32_t, std::intptr_t) override { return 0; }
    void show() override { visible_ = true; }
    void hide() override { visible_ = false; }
    bool isVisible() override { return visible_; }
    void select() override {}
    MVR::SceneNode* getParent() override { return nullptr; }
    std::int32_t getChildCount() override { return 0; }
    MVR::SceneNode* getChild(std::int32_t) override { return nullptr; }
    void release(MVR::SceneNode* handle) override;
    std::intptr_t bindTest(MVR::CInterface* tool, std::string) override { return owner_ != tool; }
    MVR::TransformAccess* getTransformAccess(double time) override { return getSnapshot(time); }
    void releaseTransformAccess(MVR::TransformAccess*) override {}
    MVR::VisibilityController* getVisibilityController(double) override { return nullptr; }
    void setVisibilityController(MVR::VisibilityController*) override {}
    bool isSameNode(MVR::SceneNode* other) override { return other == this; }
    void setParent(MVR::SceneNode*) override {}
    void setName(std::string name) override { hostName_ = name; }
    std::string getHostName() override { return hostName_; }
    void destroy(std::int32_t) override { owner_ = nullptr; }
    MVR::SceneNode* duplicate(std::int32_t) override { return nullptr; }
    MVR::TransformSnapshot* getSnapshot(double time) override;
    MVR::HelperSnapshot* getHelperSnapshot() override { return nullptr; }
    MVR::MeshSnapshot* getMeshSnapshot(double) override { return nullptr; }
    std::intptr_t getLensSnapshot(double) override { return 0; }
    void startRecording(double time) override;
    std::intptr_t firstExtension(double) override { return 0; }
    void secondExtension(std::intptr_t) override {}

private:
    // The snapshot: what a tool reads and writes for one frame.
    void get(double matrix[16]) override;
    void set(const double matrix[16]) override;
    void getGlobal(double matrix[16]) override { get(matrix); }
    void setGlobal(const double matrix[16]) override { set(matrix); }
    void getPosition(double position[3]) override;
    void setPosition(const double position[3]) override;
    void getRotation(double quaternion[4]) override;
    void setRotation(const double quaternion[4]) override { (void)quaternion; }
    std::intptr_t endSnapshot(MVR::SceneNode*) override { return 0; }

    long frameAt(double time) const;

    SmallHost& host_;
    std::string hostName_;
    double snapshotTime_ = 0.0;
    bool visible_ = true;
};
