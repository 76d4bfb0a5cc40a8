#pragma once

#include "stage/scene/stage_node.h"

#include <cstddef>
#include <cstdint>
#include <functional>
#include <memory>
#include <string>
#include <unordered_map>
#include <vector>

namespace MVR {
class CInterface;
}

namespace Stage {

class UndoList;

/// All nodes of the host, in the order of their creation. The undo list must outlive it.
class Scene {
public:
    explicit Scene(UndoList& undo) : undo_(undo) {}
    Scene(const Scene&) = delete;
    Scene& operator=(const Scene&) = delete;

    /// Creates a node below `parent` (null: a root). Its name in the scene is `name`, made unique.
    /// Can be undone if a step is open.
    StageNode* create(std::string name, MVR::CInterface* owner, std::intptr_t kind,
                      StageNode* parent);
    /// Adds a node from a file, as a root. Its name in the scene is made unique. Can be undone if a
    /// step is open.
    StageNode& restore(NodeRecord record);
    /// Removes a node, which can be undone. Its parent adopts its children.
    void remove(StageNode& node);
    /// Puts `node` below `parent` (null: makes it a root), behind its other children.
    void hang(StageNode& node, StageNode* parent);

    [[nodiscard]] const std::vector<std::shared_ptr<StageNode>>& getNodes() const { return nodes_; }
    /// Returns the node `name` of `owner` (null: of no tool), or null.
    [[nodiscard]] StageNode* find(const std::string& name, const MVR::CInterface* owner) const;
    /// Returns the node of this name in the scene, or null.
    [[nodiscard]] StageNode* findByHostName(const std::string& name) const;
    /// Returns true if the pointer is that of a node in the scene, without dereferencing it.
    [[nodiscard]] bool contains(const MVR::SceneNode* node) const;
    /// Returns `name`, or `name` with "_02" or a higher number if a node other than `self` has it.
    /// Blanks alone count as "Object".
    [[nodiscard]] std::string uniqueName(std::string name, const StageNode* self) const;

    /// While set, writing a transform sets keys.
    void setRecording(bool isRecording) { isRecording_ = isRecording; }
    [[nodiscard]] bool isRecording() const { return isRecording_; }
    /// Called after each write of keys, with the node and the keys' time.
    using KeyListener = std::function<void(const StageNode& node, double time)>;
    void setKeyListener(KeyListener listener) { keyListener_ = std::move(listener); }
    void notifyKey(const StageNode& node, double time) const;

    /// These can be undone if a step is open.
    void select(StageNode& node);
    void clearSelection() { setSelection({}); }
    [[nodiscard]] const std::vector<StageNode*>& getSelection() const { return selection_; }

    [[nodiscard]] UndoList& getUndo() { return undo_; }
    [[nodiscard]] MVR::NodeMeshHandler& getMeshHandler() { return meshHandler_; }
    [[nodiscard]] MVR::NodeTransformHandler& getTransformHandler() { return transformHandler_; }

private:
    /// Counts only transform snapshots: a node's mesh may have several readers at a time.
    class MeshHandler final : public MVR::NodeMeshHandler {
    public:
        std::intptr_t query(MVR::SceneNode* node) override;
        std::intptr_t endMeshSnapshot(MVR::SceneNode* node) override;
        std::intptr_t endHelperSnapshot(MVR::SceneNode* node) override;
    };
    class TransformHandler final : public MVR::NodeTransformHandler {
    public:
        std::intptr_t endSnapshot(MVR::SceneNode* node) override;
    };

    friend class StageNode; // for its names

    void bring(const std::shared_ptr<StageNode>& node, StageNode* parent);
    void insert(std::shared_ptr<StageNode> node, std::size_t index);
    void take(const StageNode& node);
    void setSelection(std::vector<StageNode*> nodes);
    void noteName(StageNode& node) { byName_.emplace(node.getSceneName(), &node); }
    /// Returns false if the node isn't in the scene.
    bool forgetName(const StageNode& node);

    UndoList& undo_;
    MeshHandler meshHandler_;
    TransformHandler transformHandler_;
    std::vector<std::shared_ptr<StageNode>> nodes_;
    std::unordered_multimap<std::string, StageNode*> byName_; // by the names in the scene
    std::vector<StageNode*> selection_;
    KeyListener keyListener_;
    bool isRecording_ = false;
};

} // namespace Stage
