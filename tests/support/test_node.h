#pragma once

#include "plugins/contract/c_mesh.h"
#include "plugins/contract/scene_node.h"
#include "plugins/contract/transform_matrix.h"

#include <array>
#include <cstddef>
#include <map>
#include <memory>
#include <string>
#include <vector>

namespace MVR::Testing {

/// A scene object that keeps what is written into it, the position as keys by time. It keeps its
/// position in the world when it gets another parent.
class TestNode final : public SceneNode,
                       public TransformSnapshot,
                       public MeshSnapshot,
                       public HelperSnapshot,
                       private NodeMeshHandler,
                       private NodeTransformHandler {
public:
    TestNode(std::string nodeName, CInterface* tool)
        : SceneNode(nodeName, tool), hostName(nodeName) {
        meshHandler_ = this;
        transformHandler_ = this;
    }

    std::string hostName;
    TestNode* parent = nullptr;
    bool visible = true;
    bool selected = false;
    bool destroyed = false;
    bool linked = true;                            ///< to its tool
    std::vector<TestNode*> children;               ///< kept by setParent()
    std::vector<std::unique_ptr<TestNode>> copies; ///< made by duplicate()
    int handles = 0;                               ///< handed out and not returned
    int resolved = 0;                              ///< handles of itself that are out
    int snapshots = 0;                             ///< made and not returned
    std::string lastTool;                          ///< the name of the tool that left it
    CInterface* claim = nullptr;                   ///< the tool that it is resolved for
    std::vector<std::int32_t> commands;            ///< of extend(); 0 for select()
    bool isRuled = false;                          ///< has a visibility controller
    int rulings = 0;                               ///< how often that was returned
    CMesh mesh;                                    ///< none without vertices
    LensSnapshot* lens = nullptr;                  ///< what getLensSnapshot() returns
    Matrix matrix = kIdentityMatrix;               ///< in the world; its row 3 doesn't count
    std::map<double, std::array<double, 3>> positions;
    std::map<double, std::array<double, 4>> rotations;

    // SceneNode
    std::intptr_t extend(std::int32_t code, std::intptr_t) override {
        commands.push_back(code);
        return 1;
    }
    void show() override { visible = true; }
    void hide() override { visible = false; }
    bool isVisible() override { return visible; }
    void select() override {
        selected = true;
        commands.push_back(0);
    }
    SceneNode* getParent() override { return give(parent); }
    std::int32_t getChildCount() override { return static_cast<std::int32_t>(children.size()); }
    SceneNode* getChild(std::int32_t index) override {
        return give(children[static_cast<std::size_t>(index)]);
    }
    void release(SceneNode* handle) override;
    std::intptr_t bindTest(CInterface* tool, std::string) override { return owner_ != tool; }
    TransformAccess* getTransformAccess(double time) override { return getSnapshot(time); }
    VisibilityController* getVisibilityController(double) override {
        return isRuled ? reinterpret_cast<VisibilityController*>(this) : nullptr;
    }
    void setVisibilityController(VisibilityController*) override { ++rulings; }
    void releaseTransformAccess(TransformAccess*) override { --snapshots; }
    bool isSameNode(SceneNode* other) override { return other == this; }
    void setParent(SceneNode* node) override;
    void setName(std::string newName) override { hostName = newName; }
    std::string getHostName() override { return hostName; }
    void destroy(std::int32_t deleteScene) override;
    SceneNode* duplicate(std::int32_t flag) override;
    TransformSnapshot* getSnapshot(double time) override;
    HelperSnapshot* getHelperSnapshot() override;
    MeshSnapshot* getMeshSnapshot(double time) override;
    std::intptr_t getLensSnapshot(double) override { return LensSnapshot::toHandle(lens); }
    void startRecording(double time) override;
    std::intptr_t firstExtension(double) override { return 0; }
    void secondExtension(std::intptr_t) override {}

    /// Binds the object to another tool.
    void setOwner(CInterface* tool) { owner_ = tool; }

    // The snapshots
    void get(CMesh& out) override { out = mesh; }
    void set(const CMesh& newMesh) override { mesh = newMesh; }
    // Of the transform at the time of the last getSnapshot()
    void get(double out[16]) override;
    void set(const double values[16]) override;
    void getGlobal(double out[16]) override { get(out); }
    void setGlobal(const double values[16]) override { set(values); }
    void getPosition(double position[3]) override;
    void setPosition(const double position[3]) override;
    void getRotation(double quaternion[4]) override;
    void setRotation(const double quaternion[4]) override;

private:
    std::intptr_t query(SceneNode*) override { return 0; }
    std::intptr_t endMeshSnapshot(SceneNode*) override { return --snapshots; }
    std::intptr_t endHelperSnapshot(SceneNode*) override { return --snapshots; }
    std::intptr_t endSnapshot(SceneNode*) override { return --snapshots; }

    SceneNode* give(TestNode* node) {
        handles += node != nullptr;
        return node;
    }

    double time_ = 0;
};

} // namespace MVR::Testing
