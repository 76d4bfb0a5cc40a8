#pragma once

#include "plugins/contract/c_mesh.h"
#include "plugins/contract/scene_node.h"
#include "stage/scene/curve.h"
#include "stage/scene/lens.h"
#include "stage/scene/node_snapshots.h"
#include "stage/scene/transform.h"

#include <array>
#include <cstddef>
#include <cstdint>
#include <memory>
#include <string>
#include <vector>

namespace Stage {

class Scene;

/// The animated numbers of a node, in this order everywhere. Only cameras have those of the lens.
inline constexpr std::size_t kCurveCount = 10;
inline constexpr std::array<const char*, kCurveCount> kCurveNames = {
    "tx", "ty", "tz", "qx", "qy", "qz", "qw", "focallength", "focusdistance", "fnumber"};
inline constexpr std::size_t kFirstRotationCurve = 3;
inline constexpr std::size_t kFirstLensCurve = 7;
using Curves = std::array<Curve, kCurveCount>;
/// A mesh that never changes, but may be replaced; null for none.
using SharedMesh = std::shared_ptr<const MVR::CMesh>;

/// A node without its position among the others, as a file holds it.
struct NodeRecord {
    std::string name;      ///< within its tool, or in the file that it was merged from
    std::string sceneName; ///< in the scene
    std::string tool;      ///< name of the tool that owns it; empty for a plain object
    std::intptr_t kind = 0;
    Transform rest;
    Lens lens = kDefaultLens; ///< at rest; of a camera
    Curves curves;
    SharedMesh mesh;
    bool isVisible = true;
    std::vector<std::string> highPolyNames;
};

/// One object of the scene: a parent, a transform and a lens at rest, curves that replace position,
/// rotation and lens if they have keys, a scale, a visibility, a mesh.
///
/// The "faces" of a mesh are the corners of triangles, three indices each; so are its
/// "textureFaces", and both lists have one entry per corner. Tools and models do the same.
///
/// The scene owns it, and shares it with the undo list: an entry keeps the nodes that it may
/// restore. Changes made while an undo step is open can be undone.
class StageNode final : public MVR::SceneNode, public std::enable_shared_from_this<StageNode> {
public:
    /// For Scene::create() and Scene::restore().
    StageNode(Scene& scene, std::string name, MVR::CInterface* owner, std::intptr_t kind);
    StageNode(Scene& scene, NodeRecord record);

    // What core and tools call.
    std::intptr_t extend(std::int32_t code, std::intptr_t data) override;
    void show() override;
    void hide() override;
    [[nodiscard]] bool isVisible() override { return isVisible_; }
    void select() override;
    MVR::SceneNode* getParent() override;
    std::int32_t getChildCount() override;
    MVR::SceneNode* getChild(std::int32_t index) override;
    void release(MVR::SceneNode* handle) override;
    std::intptr_t bindTest(MVR::CInterface* tool, std::string name) override;
    MVR::TransformAccess* getTransformAccess(double time) override;
    MVR::VisibilityController* getVisibilityController(double time) override;
    void setVisibilityController(MVR::VisibilityController* controller) override;
    void releaseTransformAccess(MVR::TransformAccess* access) override;
    bool isSameNode(MVR::SceneNode* other) override { return other == this; }
    void setParent(MVR::SceneNode* node) override;
    void setName(std::string name) override;
    std::string getHostName() override { return hostName_; }
    void destroy(std::int32_t deleteScene) override;
    MVR::SceneNode* duplicate(std::int32_t flag) override;
    MVR::TransformSnapshot* getSnapshot(double time) override { return snapshot_.open(time); }
    MVR::HelperSnapshot* getHelperSnapshot() override;
    MVR::MeshSnapshot* getMeshSnapshot(double time) override;
    std::intptr_t getLensSnapshot(double time) override;
    void startRecording(double time) override;
    std::intptr_t firstExtension(double time) override;
    void secondExtension(std::intptr_t data) override;

    // What the host calls.
    [[nodiscard]] std::intptr_t getKind() const { return kind_; }
    [[nodiscard]] const std::string& getSceneName() const { return hostName_; }
    [[nodiscard]] StageNode* getParentNode() const { return parent_; }
    [[nodiscard]] const std::vector<StageNode*>& getChildren() const { return children_; }
    [[nodiscard]] const Curves& getCurves() const { return curves_; }
    [[nodiscard]] const Transform& getRest() const { return rest_; }
    [[nodiscard]] const Lens& getRestLens() const { return lens_; }
    [[nodiscard]] bool hasLens() const;
    /// Null for none; copies of a node share it.
    [[nodiscard]] const SharedMesh& getMesh() const { return mesh_; }
    [[nodiscard]] bool isShown() const { return isVisible_; }

    /// Returns the transform relative to the parent. A rotation from curves has length 1; one at
    /// rest is as it was written.
    [[nodiscard]] Transform evaluate(double time) const;
    [[nodiscard]] Matrix evaluateGlobal(double time) const;
    [[nodiscard]] Lens evaluateLens(double time) const;

    /// While a take runs, these set one key at `time` on each curve that they name; otherwise they
    /// change the values at rest, which stay if the new ones aren't finite. The scale has no curve.
    void setPosition(double time, const Vector3& position);
    void setRotation(double time, const Quaternion& rotation);
    void setTransform(double time, const Transform& transform);
    /// A number that a lens can't have changes nothing.
    void setLens(double time, LensPart part, double value);

    void setMesh(SharedMesh mesh);
    void setOwner(MVR::CInterface* owner);
    /// Returns the name that the owner has in the scene file of this node, until the node is found
    /// again; empty otherwise.
    [[nodiscard]] const std::string& getSavedOwner() const { return savedOwner_; }
    /// Returns a handle of this node, which the caller releases with release().
    MVR::SceneNode* toHandle();
    void closeSnapshot() { snapshot_.close(); }

private:
    friend class Scene;

    template <typename Class, typename Value>
    void change(Value Class::*member, Value value);
    /// A transform that isn't finite changes nothing.
    void setRest(const Transform& rest);
    void setKeys(double time, std::size_t firstCurve, const double* values, std::size_t count);
    /// Returns false, with nothing set, if no take runs.
    bool record(double time, std::size_t firstCurve, const double* values, std::size_t count);
    void startLens(double time);
    Quaternion evaluateRotation(double time) const;
    /// Returns the index among the parent's children; 0 for a root.
    std::size_t getIndex() const;
    void hangBelow(StageNode* parent, std::size_t index);
    void rename(const std::string& name);

    Scene& scene_;
    std::intptr_t kind_;
    std::string hostName_;
    StageNode* parent_ = nullptr;
    std::vector<StageNode*> children_;
    Transform rest_;
    Lens lens_ = kDefaultLens;
    Curves curves_;
    SharedMesh mesh_;
    std::string savedOwner_;
    bool isVisible_ = true;
    std::int32_t handles_ = 0; // not yet released
    NodeTransform snapshot_{*this};
    NodeTransform access_{*this};
    NodeLens lensSnapshot_{*this};
    NodeMesh meshSnapshot_{*this};
    NodeHelper helper_{*this};
};

} // namespace Stage
