#pragma once

#include "data/sdk/tag.h"

#include <cstdint>
#include <string>
#include <vector>

namespace MVR {

class CInterface;
class CUndo;
class ErrorCode;
class Log;
class SceneNode;

/// What AdaptorInterface::getVersion() must return, and the exported `getVersion` does.
constexpr std::int32_t kCoreVersion = 8108;

/// Kinds of scene node that a tool asks for.
constexpr std::intptr_t kNodeHelper = 0; ///< a plain object with a transform, or with a mesh
constexpr std::intptr_t kNodeCamera = 1;
constexpr std::intptr_t kNodeLight = 2;

/// What the core sees of its host. The author of an adaptor derives one class and passes an object
/// of it to the exported `attach`.
///
/// 1. Load the library and look up `attach`, `detach`, `getVersion`, and `pumpEvents` if the
///    host's loop is its own.
/// 2. attach(adaptor) calls getVersion(), setErrorCode(), setLog(), getHostWindow(), getName() and
///    more, and returns the CoreInterface of this attachment.
/// 3. The core may then call any operation at any time, from any call into it and from its timer
///    events.
/// 4. detach(core) ends a running take and destroys the tools of the tree, then calls
///    detachNotify(), releaseErrorCode() and releaseLog(); it may still call getName() after these.
///    The object must live until `detach` has returned 0. All CUndo objects must be destroyed by
///    the end of detachNotify().
///
/// An exception that leaves an operation is caught and named in the log; the operation then counts
/// as one that did nothing, or answered with nothing.
///
/// Only the core calls these operations. An operation whose comment names no moment may be called
/// at any time between setLog() and detachNotify(), also during takes. All calls are made on the
/// thread that called `attach`, the host's user-interface thread. Strings and tags pass by value.
/// Times are seconds of scene time; the conventions of all numbers are in
/// plugins/contract/snapshots.h. The core never destroys the adaptor. The order of the virtual
/// operations is frozen; reserved ones are not called.
class AdaptorInterface {
public:
    /// Returns kCoreVersion; with any other value `attach` fails before any other call. Called
    /// first.
    virtual std::int32_t getVersion() = 0;
    /// Called once, in `attach`. `table` is the core's error table, for reporting and registering
    /// codes; it is valid until releaseErrorCode(), which is called once, in `detach`. An adaptor
    /// that uses ErrorCode::instance() calls ErrorCode::adopt(table) here and adopt(nullptr) there.
    virtual void setErrorCode(ErrorCode* table) = 0;
    virtual void releaseErrorCode() = 0;
    /// Called once, in `attach`. The core's log is valid until releaseLog(), called once, in
    /// `detach`.
    virtual void setLog(Log* log) = 0;
    virtual void releaseLog() = 0;
    virtual void reserved1() {}
    /// Returns a short name of the host; the folders of its settings have this name.
    virtual std::string getName() = 0;
    virtual void reserved2() {}
    virtual void reserved3() {}
    /// Returns the host's main window, or 0. Called in the first `attach` of a loaded library.
    virtual std::intptr_t getHostWindow() = 0;

    /// Returns the node `name` of `tool`. If it is missing, makes it as `kind` (kNodeHelper, ...)
    /// below `parent` (a SceneNode*, or 0 for a root); returns null if the host can't. The adaptor
    /// owns nodes.
    virtual SceneNode* createNode(CInterface* tool, std::string name, std::intptr_t kind,
                                  std::intptr_t parent) = 0;
    /// The same with a mesh: a CMesh* to copy from, or 0.
    virtual SceneNode* createNode(CInterface* tool, std::string name, std::intptr_t kind,
                                  std::intptr_t mesh, std::intptr_t parent) = 0;
    virtual void reserved4() {}
    /// Returns the node `name` of `tool`, or null if there is none.
    virtual SceneNode* createNode(CInterface* tool, std::string name) = 0;
    /// Returns all nodes of `tool`, in a stable order. A null among them is left out and logged.
    virtual std::vector<SceneNode*> getNodes(CInterface* tool) = 0;
    /// Called for a tool from saved data, after its init() and before its load(). Returns one node
    /// or null for each "node" element of `nodeInfo`, in order. `name` is the tool's name in that
    /// data. The core gives each node back with node->release(node), after which it remains the
    /// tool's.
    virtual std::vector<SceneNode*> resolveNodes(Tag nodeInfo, std::string name,
                                                 CInterface* tool) = 0;
    /// Merges a file of the host's own format into the scene. Returns the new nodes, or none on
    /// failure. Their getName() is the name in the file. The core gives each node back with
    /// node->release(node). Called while a model is made, inside its undo step.
    virtual std::vector<SceneNode*> mergeFile(std::string path) = 0;

    // The undo list. For a host whose undo restores whole scenes see docs/adaptor.md.

    /// Opens a step of the host's undo list. Steps nest; the outermost names the entry. Each call
    /// is paired with one of endUndo() or cancelUndo(); a whole take is one such pair.
    virtual void beginUndo(std::string name) = 0;
    /// Puts an object into the open step; the host owns it and frees it with destroy(). If no step
    /// is open, or an undo runs, the host may make an entry of it or free it at once.
    virtual void addUndo(CUndo* object) = 0;
    /// Closes the innermost open step.
    virtual void endUndo() = 0;
    /// Closes the innermost open step, undoes what it holds and drops it.
    virtual void cancelUndo() = 0;
    /// Returns true if a step accepts objects now.
    virtual bool isUndoOpen() = 0;
    /// Undoes the last step; returns false if it didn't. Called right after the end of a take, with
    /// no step open, when the user asks for a retake; after true the next take starts at getTime().
    virtual bool undo() = 0;

    virtual double getTime() = 0; ///< the host's current time
    /// Called at the start of a take, after each of its events and at its end.
    virtual void setTime(double time) = 0;
    virtual void getRange(double* start, double* end) = 0; ///< the animation range
    /// Called during a take that goes beyond the end of the range, with auto-expand on.
    virtual void setRange(double start, double end) = 0;
    virtual double getFrameRate() = 0; ///< frames per second, above 0
    virtual double getFrameStep() = 0; ///< seconds per frame, above 0
    /// Repaints the host's views.
    virtual void redraw() = 0;
    /// A text field of the core has the keyboard: the host must leave keys alone until
    /// endKeyboardCapture().
    virtual void beginKeyboardCapture() = 0;
    virtual void endKeyboardCapture() = 0;
    /// A recording or resimulation starts. Called inside its undo step, before any tool is
    /// prepared. `tools` are the tools that participate, in the order in which they run.
    virtual void recordingStarted(const std::vector<CInterface*>& tools) = 0;
    virtual void reserved5() {}
    /// The recording or resimulation has ended. Called after the last frame and all
    /// finishRecording(), before the endUndo() of its step. CoreInterface::startRecording() is
    /// refused during this call.
    virtual void recordingFinished() = 0;
    /// The attachment ends. Called once, in `detach`, after a running take was ended and the tools
    /// of the tree were destroyed. The host destroys its remaining CUndo objects here.
    virtual void detachNotify() = 0;
    /// Returns the adaptor's own panel for the preferences, or an empty tag if it has none.
    virtual Tag getSettingsLayout() = 0;

protected:
    ~AdaptorInterface() = default;
};

} // namespace MVR
