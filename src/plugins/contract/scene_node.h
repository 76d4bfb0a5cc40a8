#pragma once

#include "plugins/contract/snapshots.h"

#include <cstdint>
#include <string>
#include <utility>
#include <vector>

namespace MVR {

class CInterface;
class SceneNode;

/// Rules the visibility of a node where the host animates it. Only the adaptor looks inside.
class VisibilityController;

// The handlers are called when the operation of CInterface that each names is; `node` is the one
// that holds the handler, never null.

/// What a node answers to nodeQuery2, nodeQuery3 and nodeQuery4 of CInterface.
class NodeMeshHandler {
public:
    virtual std::intptr_t query(SceneNode* node) = 0;             ///< nodeQuery2: the adaptor's own
    virtual std::intptr_t endMeshSnapshot(SceneNode* node) = 0;   ///< nodeQuery3
    virtual std::intptr_t endHelperSnapshot(SceneNode* node) = 0; ///< nodeQuery4

protected:
    ~NodeMeshHandler() = default;
};

/// What a node answers to nodeQuery5 of CInterface.
class NodeTransformHandler {
public:
    virtual std::intptr_t endSnapshot(SceneNode* node) = 0;

protected:
    ~NodeTransformHandler() = default;
};

/// What a node answers to nodeQuery1 of CInterface; its meaning lies with the adaptor.
class NodeQueryHandler {
public:
    virtual std::intptr_t query(SceneNode* node) = 0;

protected:
    ~NodeQueryHandler() = default;
};

/// The adaptor's object behind a tool: one object of the host's scene.
///
/// The adaptor makes nodes (AdaptorInterface::createNode) and owns them; core and tools only hold
/// pointers, which stay valid until release() or destroy(). A pointer that getParent(), getChild()
/// or duplicate() gave is a handle: its taker gives it back with release(handle). Numbers keep the
/// conventions of snapshots.h.
///
/// Unless its comment says otherwise an operation may be called from when the node was given out
/// until release() or destroy() of the node, in takes and between them; core and tools both call.
/// It must then answer too while its scene object is gone, by an undo or by the user's hand: what
/// reads gives nothing, what writes does nothing. All calls come on the host's user-interface
/// thread. The order of the virtual operations is frozen.
class SceneNode {
public:
    /// A command of `NodeCommand` (plugins/contract/extension_ids.h), which tells when it comes.
    /// Non-zero if the adaptor knows it.
    virtual std::intptr_t extend(std::int32_t code, std::intptr_t data) = 0;
    /// Sets the visibility of the scene object itself, whatever its parents', as an act that the
    /// host's undo step takes back; what it is already does nothing. Not for an object whose
    /// visibility a controller rules.
    virtual void show() = 0;
    virtual void hide() = 0;
    /// What show() and hide() set.
    [[nodiscard]] virtual bool isVisible() = 0;
    /// Adds the node to the host's selection. Comes after a model was made, between the two
    /// commands of NodeCommand, and wherever a tool wants it.
    virtual void select() = 0;
    /// A handle of the parent in the host, or null for a root.
    virtual SceneNode* getParent() = 0;
    /// The children of the scene object in the host, whoever owns them; 0 if the object is gone.
    virtual std::int32_t getChildCount() = 0;
    /// A handle of a child in the host; null if `index` is out of range.
    virtual SceneNode* getChild(std::int32_t index) = 0;
    /// Gives a handle back, which isn't used after that. With this very node as `handle` it gives
    /// back what resolveNodes() or mergeFile() gave; if nothing of that is out the tool behind it
    /// is going, the link to the tool ends and the scene object stays.
    virtual void release(SceneNode* handle) = 0;
    /// Comes once for each node that resolveNodes() found, before its release(), while a saved tool
    /// is made. Non-zero if the adaptor must make the node anew for the tool behind `tool`, because
    /// the scene object of that saved name is not bound to it.
    virtual std::intptr_t bindTest(CInterface* tool, std::string name) = 0;
    /// The local matrix at `time` (seconds); null if the node has none. Given back with
    /// releaseTransformAccess().
    virtual TransformAccess* getTransformAccess(double time) = 0;
    /// What rules the node's visibility at `time` (seconds), or null if nothing does: then show()
    /// and hide() do. The adaptor owns it; it is valid until the next call of this node.
    virtual VisibilityController* getVisibilityController(double time) = 0;
    /// Gives back what getVisibilityController() of this node gave right before, for it to rule the
    /// node. Only if that wasn't null.
    virtual void setVisibilityController(VisibilityController* controller) = 0;
    /// Ends what getTransformAccess() of this node gave; once for each.
    virtual void releaseTransformAccess(TransformAccess* access) = 0;
    /// True if `other` is the same object of the host.
    virtual bool isSameNode(SceneNode* other) = 0;
    /// Hangs the node below `node`; null makes it a root. It keeps its place in the world: a model
    /// places its nodes there first and hangs them up then.
    virtual void setParent(SceneNode* node) = 0;
    /// Names the object in the host.
    virtual void setName(std::string name) = 0;
    /// The object's name in the host.
    virtual std::string getHostName() = 0;
    /// Ends the node; no call of it follows, unless an undo brings back it and its tool. With
    /// `deleteScene` 1 the scene object goes too (an undoable act of the host), with 0 it stays,
    /// free of the tool.
    virtual void destroy(std::int32_t deleteScene) = 0;
    /// A handle of a copy of a plain host object. `flag` is 0.
    virtual SceneNode* duplicate(std::int32_t flag) = 0;

    // The snapshots. One of a kind may be out at a time; the core takes some while it saves and
    // makes tools, tools take them whenever they may call CInterface::getSnapshot().

    /// The transform at `time` (seconds), or null. See TransformSnapshot.
    virtual TransformSnapshot* getSnapshot(double time) = 0;
    /// The node as an object whose mesh can be replaced; null if it isn't one. The adaptor owns it;
    /// it is valid until NodeMeshHandler::endHelperSnapshot(), which comes before the next one.
    virtual HelperSnapshot* getHelperSnapshot() = 0;
    /// The node's mesh at `time` (seconds); null if it has none. The adaptor owns it; it is valid
    /// until NodeMeshHandler::endMeshSnapshot(), which comes before the next one.
    virtual MeshSnapshot* getMeshSnapshot(double time) = 0;
    /// The lens at `time` (seconds) as LensSnapshot::toHandle() gives it; 0 if the node has none.
    virtual std::intptr_t getLensSnapshot(double time) = 0;
    /// A recording or resimulation starts at `time` (seconds): what the node has from there on is
    /// about to be recorded anew. Keys before `time` must stay. Comes once for each take, inside
    /// its undo step, after startRecording() of the node's tool and before its first record().
    virtual void startRecording(double time) = 0;
    /// Extensions 38 and 39 of CInterface, when a tool sends them; their meaning lies with the
    /// adaptor.
    virtual std::intptr_t firstExtension(double time) = 0;
    virtual void secondExtension(std::intptr_t data) = 0;

    // These read what the adaptor has set; they may be called as long as the node lives.

    /// The name of the node within its tool; getHostName() is the one in the scene.
    [[nodiscard]] const std::string& getName() const { return name_; }
    /// The tool that owns the node; null for a plain object of the host.
    [[nodiscard]] CInterface* getOwner() const { return owner_; }
    /// Names of the high-poly objects that hang below the node; the core fills and reads it.
    [[nodiscard]] std::vector<std::string>& getHighPolyNames() { return highPolyNames_; }

    /// Handlers may be null. The adaptor owns them; they outlive the node.
    [[nodiscard]] NodeMeshHandler* getMeshHandler() const { return meshHandler_; }
    [[nodiscard]] NodeTransformHandler* getTransformHandler() const { return transformHandler_; }
    [[nodiscard]] NodeQueryHandler* getQueryHandler() const { return queryHandler_; }

protected:
    SceneNode(std::string name, CInterface* owner) : name_(std::move(name)), owner_(owner) {}
    ~SceneNode() = default;

    std::string name_;
    CInterface* owner_;
    std::vector<std::string> highPolyNames_;
    NodeMeshHandler* meshHandler_ = nullptr;
    NodeTransformHandler* transformHandler_ = nullptr;
    NodeQueryHandler* queryHandler_ = nullptr;
};

} // namespace MVR
