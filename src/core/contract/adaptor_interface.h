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

/// What the core sees of its host. The author of an adaptor derives one class and gives it to the
/// exported `attach`.
///
/// 1. Load the library and look up `attach`, `detach`, `getVersion`, and `pumpEvents` if the
///    host's loop is its own.
/// 2. attach(adaptor): getVersion(), setErrorCode(), setLog(), getHostWindow(), getName() and
///    more come while it runs. The result is the CoreInterface of this attachment.
/// 3. Any operation may come at any time, from any call into the core and from its timer events.
/// 4. detach(core): a running take ends, the tools of the tree go, then detachNotify(),
///    releaseErrorCode(), releaseLog(); getName() may still come after these. The object must live
///    until `detach` has returned. All CUndo objects must be destroyed by the end of
///    detachNotify().
///
/// Only the core calls these operations. Where a comment names no moment one comes at any time
/// between setLog() and detachNotify(), in takes too. Every call comes on the thread that called
/// `attach`, the host's user-interface thread. Strings and tags pass by value. Times are seconds of
/// scene time; the conventions of all numbers stand in plugins/contract/snapshots.h. The core never
/// destroys the adaptor. The order of the virtual operations is frozen; reserved places are not
/// called.
class AdaptorInterface {
public:
    /// kCoreVersion; anything else makes `attach` fail before any other call. Comes first of all.
    virtual std::int32_t getVersion() = 0;
    /// Comes once, in `attach`. The core's error table, to report and register codes through; valid
    /// until releaseErrorCode(), which comes once, in `detach`. An adaptor that uses
    /// ErrorCode::instance() calls ErrorCode::adopt(table) here and adopt(nullptr) there.
    virtual void setErrorCode(ErrorCode* table) = 0;
    virtual void releaseErrorCode() = 0;
    /// The core's log; as above, valid until releaseLog().
    virtual void setLog(Log* log) = 0;
    virtual void releaseLog() = 0;
    virtual void reserved1() {}
    /// A short name of the host; names the folders of its settings.
    virtual std::string getName() = 0;
    virtual void reserved2() {}
    virtual void reserved3() {}
    /// The host's main window, or 0. Comes in the first `attach` of a loaded library.
    virtual std::intptr_t getHostWindow() = 0;

    /// The node `name` of `tool`, made as `kind` (kNodeHelper, ...) below `parent` (a SceneNode*,
    /// or 0 for a root) if it is missing. The adaptor owns nodes. Null if the host can't.
    virtual SceneNode* createNode(CInterface* tool, std::string name, std::intptr_t kind,
                                  std::intptr_t parent) = 0;
    /// The same with a mesh: a CMesh* to copy from, or 0.
    virtual SceneNode* createNode(CInterface* tool, std::string name, std::intptr_t kind,
                                  std::intptr_t mesh, std::intptr_t parent) = 0;
    virtual void reserved4() {}
    /// The node `name` of `tool`, or null.
    virtual SceneNode* createNode(CInterface* tool, std::string name) = 0;
    /// All nodes of `tool`, in a stable order.
    virtual std::vector<SceneNode*> getNodes(CInterface* tool) = 0;
    /// For a tool from saved data, after its init() and before its load(): one node or null for
    /// each "node" element of `nodeInfo`, in order. `name` is the tool's name in that data. Each
    /// node is given back by a release() of itself, behind which it goes on as the tool's.
    virtual std::vector<SceneNode*> resolveNodes(Tag nodeInfo, std::string name,
                                                 CInterface* tool) = 0;
    /// Comes while a model is made, inside its undo step. Merges a file of the host's own format
    /// into the scene; the new nodes, empty on failure. Their getName() is the one in the file.
    /// Each is given back by a release() of itself.
    virtual std::vector<SceneNode*> mergeFile(std::string path) = 0;

    // The undo list. docs/adaptor.md tells how a host fits in whose undo puts back whole scenes.

    /// Opens a step of the host's undo list. Steps nest; the outermost names the entry. Comes in
    /// pairs with endUndo() or cancelUndo(); a take is between the two from its start to its end.
    virtual void beginUndo(std::string name) = 0;
    /// Puts an object into the open step; the host owns it and frees it with destroy(). If none is
    /// open, or an undo runs, the host may make an entry of it or free it at once.
    virtual void addUndo(CUndo* object) = 0;
    /// Closes the innermost open step.
    virtual void endUndo() = 0;
    /// Closes the innermost open step, takes back what it holds and drops it.
    virtual void cancelUndo() = 0;
    /// True if a step takes objects now.
    virtual bool isUndoOpen() = 0;
    /// Undoes the last step; true if it did. Comes right after the end of a take, with no step
    /// open, as the user asks for a retake; true starts the next one at getTime().
    virtual bool undo() = 0;

    virtual double getTime() = 0; ///< the host's current time
    /// Comes at the start of a take, after each of its events and at its end.
    virtual void setTime(double time) = 0;
    virtual void getRange(double* start, double* end) = 0; ///< the animation range
    /// Comes in a take that goes beyond the end of the range, with auto-expand on.
    virtual void setRange(double start, double end) = 0;
    virtual double getFrameRate() = 0; ///< frames per second, above 0
    virtual double getFrameStep() = 0; ///< seconds per frame, above 0
    /// Repaints the host's views.
    virtual void redraw() = 0;
    /// A text field of the core has the keyboard: the host leaves keys alone until the end.
    virtual void beginKeyboardCapture() = 0;
    virtual void endKeyboardCapture() = 0;
    /// Comes inside the undo step of a recording or resimulation, before any tool is prepared: the
    /// tools that take part, in the order they run in.
    virtual void recordingStarted(const std::vector<CInterface*>& tools) = 0;
    virtual void reserved5() {}
    /// It has ended; comes after the last frame and all finishRecording(), before the endUndo() of
    /// its step. CoreInterface::startRecording() is refused in it.
    virtual void recordingFinished() = 0;
    /// The attachment ends; comes once, in `detach`, after a running take was ended and the tools
    /// of the tree were destroyed. The host destroys what it still has of CUndo objects here.
    virtual void detachNotify() = 0;
    /// A panel of the adaptor's own for the preferences; an empty tag for none.
    virtual Tag getSettingsLayout() = 0;

protected:
    ~AdaptorInterface() = default;
};

} // namespace MVR
