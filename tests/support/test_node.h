#pragma once

#include "plugins/scene_node.h"

#include <array>
#include <cstddef>
#include <map>
#include <memory>
#include <string>
#include <vector>

namespace MVR::Testing {

/// A scene object that keeps what is written into it as keys, by time.
class TestNode final : public SceneNode, public TransformSnapshot {
public:
    TestNode(std::string nodeName, CInterface* tool)
        : SceneNode(nodeName, tool), hostName(nodeName) {}

    std::string hostName;
    TestNode* parent = nullptr;
    bool visible = true;
    bool selected = false;
    bool destroyed = false;
    bool linked = true;                            ///< to its tool
    std::vector<TestNode*> children;               ///< kept by setParent()
    std::vector<std::unique_ptr<TestNode>> copies; ///< made by duplicate()
    int handles = 0;                               ///< given out and not given back
    std::map<double, std::array<double, 3>> positions;
    std::map<double, std::array<double, 4>> rotations;

    // SceneNode
    std::intptr_t extend(std::int32_t, std::intptr_t) override { return 0; }
    void show() override { visible = true; }
    void hide() override { visible = false; }
    bool isVisible() override { return visible; }
    void select() override { selected = true; }
    SceneNode* getParent() override { return give(parent); }
    std::int32_t getChildCount() override { return static_cast<std::int32_t>(children.size()); }
    SceneNode* getChild(std::int32_t index) override {
        return give(children[static_cast<std::size_t>(index)]);
    }
    void release(SceneNode* handle) override;
    std::intptr_t bindTest(CInterface*, std::string) override { return 0; }
    TransformAccess* getTransformAccess(double time) override { return getSnapshot(time); }
    VisibilityController* getVisibilityController(double) override { return nullptr; }
    void setVisibilityController(VisibilityController*) override {}
    void releaseTransformAccess(TransformAccess*) override {}
    bool isSameNode(SceneNode* other) override { return other == this; }
    void setParent(SceneNode* node) override;
    void setName(std::string newName) override { hostName = newName; }
    std::string getHostName() override { return hostName; }
    void destroy(std::int32_t deleteScene) override;
    SceneNode* duplicate(std::int32_t flag) override;
    TransformSnapshot* getSnapshot(double time) override;
    HelperSnapshot* getHelperSnapshot() override { return nullptr; }
    MeshSnapshot* getMeshSnapshot(double) override { return nullptr; }
    std::intptr_t getLensSnapshot(double) override { return 0; }
    void startRecording(double time) override;
    std::intptr_t firstExtension(double) override { return 0; }
    void secondExtension(std::intptr_t) override {}

    // TransformSnapshot, at the time of the last getSnapshot()
    void get(double matrix[16]) override;
    void set(const double matrix[16]) override;
    void getGlobal(double matrix[16]) override { get(matrix); }
    void setGlobal(const double matrix[16]) override { set(matrix); }
    void getPosition(double position[3]) override;
    void setPosition(const double position[3]) override;
    void getRotation(double quaternion[4]) override;
    void setRotation(const double quaternion[4]) override;

private:
    SceneNode* give(TestNode* node) {
        handles += node != nullptr;
        return node;
    }

    double time_ = 0;
};

} // namespace MVR::Testing
