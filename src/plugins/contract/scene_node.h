#pragma once

#include "plugins/contract/snapshots.h"

#include <cstdint>
#include <string>
#include <utility>
#include <vector>

namespace MVR {

class CInterface;
class SceneNode;

/// Controls the visibility of a node that the host animates. Only the adaptor knows its contents.
class VisibilityController;

// A handler is called when the operation of CInterface that it names is called; `node` is the one
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

/// What a node answers to nodeQuery1 of CInterface; the adaptor defines its meaning.
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
/// or duplicate() returned is a handle: the caller gives it back with release(handle). Numbers
/// follow the conventions of snapshots.h.
///
/// Unless its comment says otherwise, core and tools may call an operation from when the node was
/// handed out until release() or destroy() of the node, during takes and between them. A node must
/// also answer while its scene object is gone, after an undo or an act of the user: what reads
/// returns nothing, what writes does nothing. All calls are made on the host's user-interface
/// thread. The order of the virtual operations is frozen.
class SceneNode {
public:
    /// Performs a command of `NodeCommand` (plugins/contract/extension_ids.h), which says when it
    /// is sent. Returns non-zero if the adaptor knows it.
    virtual std::intptr_t extend(std::int32_t code, std::intptr_t data) = 0;
    /// Sets the visibility of the scene object itself, whatever its parents', as an act that the
    /// host's undo step undoes; does nothing if it is so already. Not for an object whose
    /// visibility has a controller.
    virtual void show() = 0;
    virtual void hide() = 0;
    /// Returns what show() and hide() set.
    [[nodiscard]] virtual bool isVisible() = 0;
    /// Adds the node to the host's selection. Called after a model was made, between the two
    /// commands of NodeCommand, and whenever a tool wants it.
    virtual void select() = 0;
    /// Returns a handle of the parent in the host, or null for a root.
    virtual SceneNode* getParent() = 0;
    /// Returns the number of children of the scene object in the host, whoever owns them; 0 if the
    /// object is gone.
    virtual std::int32_t getChildCount() = 0;
    /// Returns a handle of a child in the host, or null if `index` is out of range.
    virtual SceneNode* getChild(std::int32_t index) = 0;
    /// Gives back a handle, which isn't used after that. With this node itself as `handle`, gives
    /// back what resolveNodes() or mergeFile() returned; if none of that is outstanding, the tool
    /// behind the node is being destroyed: the link to the tool ends and the scene object stays.
    virtual void release(SceneNode* handle) = 0;
    /// Returns non-zero if the adaptor must make the node anew for the tool behind `tool`, because
    /// the scene object of that saved name is not bound to it. Called once for each node that
    /// resolveNodes() found, before its release(), while a saved tool is made.
    virtual std::intptr_t bindTest(CInterface* tool, std::string name) = 0;
    /// Returns the local matrix at `time` (seconds), or null if the node has none. The caller gives
    /// it back with releaseTransformAccess().
    virtual TransformAccess* getTransformAccess(double time) = 0;
    /// Returns what controls the node's visibility at `time` (seconds), or null if only show() and
    /// hide() do. The adaptor owns it; it is valid until the next call of this node.
    virtual VisibilityController* getVisibilityController(double time) = 0;
    /// Gives back what getVisibilityController() of this node returned right before, to control the
    /// node. Called only if that wasn't null.
    virtual void setVisibilityController(VisibilityController* controller) = 0;
    /// Gives back what getTransformAccess() of this node returned; called once for each.
    virtual void releaseTransformAccess(TransformAccess* access) = 0;
    /// Returns true if `other` is the same object of the host.
    virtual bool isSameNode(SceneNode* other) = 0;
    /// Makes the node a child of `node`; null makes it a root. It keeps its transform in world
    /// space: a model first positions its nodes there and then sets their parents.
    virtual void setParent(SceneNode* node) = 0;
    /// Names the object in the host.
    virtual void setName(std::string name) = 0;
    /// Returns the object's name in the host.
    virtual std::string getHostName() = 0;
    /// Ends the node; it isn't called again unless an undo brings back it and its tool. With
    /// `deleteScene` 1 the scene object is deleted too (an undoable act of the host); with 0 it
    /// stays, free of the tool.
    virtual void destroy(std::int32_t deleteScene) = 0;
    /// Copies a plain host object and returns a handle of the copy. `flag` is 0.
    virtual SceneNode* duplicate(std::int32_t flag) = 0;

    // The snapshots. One of a kind may be out at a time. The core asks for some while it saves and
    // makes tools; tools ask for them whenever they may call CInterface::getSnapshot().

    /// Returns the transform at `time` (seconds), or null if the node has none. See
    /// TransformSnapshot.
    virtual TransformSnapshot* getSnapshot(double time) = 0;
    /// Returns the node as an object whose mesh can be replaced, or null if it isn't one. The
    /// adaptor owns it; it is valid until NodeMeshHandler::endHelperSnapshot(), which comes before
    /// the next one.
    virtual HelperSnapshot* getHelperSnapshot() = 0;
    /// Returns the node's mesh at `time` (seconds), or null if it has none. The adaptor owns it; it
    /// is valid until NodeMeshHandler::endMeshSnapshot(), which comes before the next one.
    virtual MeshSnapshot* getMeshSnapshot(double time) = 0;
    /// Returns the lens at `time` (seconds) as LensSnapshot::toHandle() does; 0 if the node has
    /// none.
    virtual std::intptr_t getLensSnapshot(double time) = 0;
    /// A recording or resimulation starts at `time` (seconds), and all that the node has from then
    /// on will be recorded anew. Keys before `time` must stay. Called once for each take, inside
    /// its undo step, after startRecording() of the node's tool and before its first record().
    virtual void startRecording(double time) = 0;
    /// Extensions 38 and 39 of CInterface, when a tool sends them; the adaptor defines their
    /// meaning.
    virtual std::intptr_t firstExtension(double time) = 0;
    virtual void secondExtension(std::intptr_t data) = 0;

    // These return what the adaptor has set; they may be called as long as the node lives.

    /// Returns the name of the node within its tool; getHostName() returns the one in the scene.
    [[nodiscard]] const std::string& getName() const { return name_; }
    /// Returns the tool that owns the node, or null for a plain object of the host.
    [[nodiscard]] CInterface* getOwner() const { return owner_; }
    /// Returns the names of the high-poly objects below the node; the core fills and reads the
    /// list.
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
