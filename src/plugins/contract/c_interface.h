#pragma once

#include "plugins/contract/c_extendable.h"
#include "plugins/contract/c_undo.h"
#include "plugins/contract/scene_node.h"
#include "plugins/contract/snapshots.h"
#include "unidevice/sdk/property.h"

#include <cstdint>
#include <string>
#include <vector>

namespace MVR {

class CMesh;

/// What a tool sees of the core and the host. Each placed tool has one, owned by the core and valid
/// from the first extend() of the tool to its destroy().
///
/// When its operations may be called, unless their comments say otherwise:
/// - What only reads (getDataPath(), getSaveData(), createNode(name), snapshots that nothing is
///   written to, the times and rates): at any time from init() on.
/// - What changes the scene (addUndo(), destroyNode(), createNode() with a kind, writing to
///   snapshots): in create() and load(), and in takes, where a step of the host's undo list is
///   open. Keys are written in record() and finishRecording() only. Elsewhere, such as in answer to
///   a button, the host decides whether such a change can be undone.
///
/// Times are seconds of scene time; other numbers follow the conventions of snapshots.h. Nodes and
/// snapshots belong to the host's adaptor. All calls must be made on the host's user-interface
/// thread. The order of the virtual operations is frozen.
///
/// Extensions that extend() answers, from init() on:
///
/// | id | data | result |
/// |----|------|--------|
/// | 38 | NodeTimeRecord* | what the node answers |
/// | 39 | a record whose second field is a node, or null | 0 |
/// | 41 | VirtualControlRecord* | the new virtual control, owned by the core |
/// | 43 | not used | 0; removes the tool and its scene objects from the scene |
/// | 55 | std::string* | 0; receives the parent tool's name, if there is one |
/// | 56 | Tag* | 0; receives the chain of parents |
/// | 57 | ToolIdentity* | 0; receives the tool's name and type, see tool_identity.h |
///
/// Call 41 in init(), so that saved bindings find the control. After 43 the tool may be gone, so it
/// must make no further call. Parents within the same file are known to 55 and 56 from extend(42)
/// on; the tool that the user places the whole file below becomes the parent only after that.
class CInterface : public CExtendable {
public:
    /// Changes the choices of a combo. The core owns it; it lives as long as the tool.
    class ComboUpdater {
    public:
        /// May be called at any time after endPanel().
        virtual void update(std::vector<std::string> choices) = 0;

    protected:
        ~ComboUpdater() = default;
    };

    /// Called after the user changed a control of the panel. The tool owns it.
    class Callback {
    public:
        /// `name` is the label that the control was added with. Called between takes and during
        /// them, when the user changes the control.
        virtual void changed(std::string name) = 0;

    protected:
        ~Callback() = default;
    };

    /// Data of extension 38.
    struct NodeTimeRecord {
        SceneNode* node;
        double time;
    };

    /// Data of extension 41: a control that the tool offers to other tools as live input.
    struct VirtualControlRecord {
        std::string name;
        std::int32_t index;
        std::int32_t kindMask; ///< bits of UniDevice::ControlKind
    };

    /// Puts `object` into the host's open undo step; the host owns it from then on.
    virtual void addUndo(CUndo* object) = 0;

    /// Returns the input property of this name, which it makes if the tool has none yet.
    /// `acceptedKinds` are the kinds of control it can be bound to; `factory` is not used and may
    /// be null. The core owns the result, which lives as long as the tool. Call it in init(), so
    /// that saved bindings find the property.
    virtual UniDevice::Property* addProperty(std::string name, std::int32_t acceptedKinds,
                                             UniDevice::Property::Factory* factory) = 0;
    /// Returns the input property of this name, or null if there is none.
    virtual UniDevice::Property* findProperty(std::string name) = 0;

    /// The panel: call beginPanel(), add groups and controls, then call endPanel(), once and all in
    /// init(). Outside of that pair the operations that add do nothing. A `variable` must live as
    /// long as the tool. In a spinner, `input` true adds an input property named "Spinner: " + name
    /// that moves the value during a take; `triggerLength` is the mouse travel for one step, in
    /// pixels, 1 or more; `unused` is not read. A spinner without a variable is left out and named
    /// in the log.
    virtual void beginPanel() = 0;
    virtual void endPanel() = 0;
    virtual void beginGroup(std::string name, std::string tooltip) = 0;
    virtual void endGroup() = 0;
    virtual void addSpinnerInt(std::string name, std::string tooltip, std::int32_t* variable,
                               std::int32_t minimum, std::int32_t maximum, std::int32_t step,
                               std::int32_t triggerLength, bool input, std::intptr_t unused,
                               Callback* callback) = 0;
    virtual void addSpinner(std::string name, std::string tooltip, double* variable, double minimum,
                            double maximum, double step, std::int32_t triggerLength, bool input,
                            std::intptr_t unused, Callback* callback) = 0;
    virtual void addCheck(std::string name, std::string tooltip, bool* variable,
                          Callback* callback) = 0;
    virtual void addText(std::string name, std::string tooltip, std::string* variable,
                         Callback* callback) = 0;
    /// Returns null if no panel is being built.
    virtual ComboUpdater* addCombo(std::string name, std::string tooltip,
                                   std::vector<std::string> choices, std::string* variable,
                                   Callback* callback) = 0;
    virtual void addButton(std::string name, std::string tooltip, Callback* callback) = 0;

    /// Opens the tool's configuration dialog; does nothing if there is none. Call it when the user
    /// asks for it, not while the tool is made.
    virtual void openConfiguration() = 0;
    /// Shows the present values of the tool's variables in the panel. May be called at any time
    /// after endPanel().
    virtual void updatePanel() = 0;
    /// Opens the dialog in which the user binds inputs; returns 0 if none was made. Call it when
    /// the user asks for it.
    virtual std::intptr_t openInputDialog() = 0;

    /// Returns the folder of the tool's own data files; empty if the user's folders can't be found.
    virtual std::string getDataPath() = 0;

    /// Copies `size` bytes as the tool's saved block. Call it in CCamera::save().
    virtual void setSaveData(const void* bytes, std::int32_t size) = 0;
    /// Returns the size of the saved block in bytes, and stores its address unless `address` is
    /// null. The core owns the block.
    virtual std::int32_t getSaveData(const void** address) = 0;
    /// Frees the saved block; may be called at any time.
    virtual void clearSaveData() = 0;

    /// Deletes a node of this tool together with its scene object.
    virtual void destroyNode(SceneNode* node, std::intptr_t unused) = 0;

    /// Returns the node of this tool with this name, or null if there is none.
    virtual SceneNode* createNode(std::string name) = 0;
    /// Returns the node of this tool with this name, which it makes if it is missing; null if the
    /// host can't. `kind` and `parent` are as in AdaptorInterface::createNode.
    virtual SceneNode* createNode(std::string name, std::intptr_t kind, std::intptr_t parent) = 0;
    /// The same, with a mesh; `mesh` is a CMesh*, which the caller keeps.
    virtual SceneNode* createNode(std::string name, std::intptr_t kind, std::intptr_t mesh,
                                  std::intptr_t parent) = 0;
    /// Does nothing.
    virtual void createNode(std::string name, CMesh mesh) = 0;

    /// Return a snapshot of a node, for reading and animating it; null for a null node (logged), or
    /// if the host has none. Give each back before the next of its kind on that node, as the scoped
    /// ones of scoped_snapshot.h do. One that is still out when the tool returns from the call of
    /// CCamera in which it took it is ended then, and named in the log. LensSnapshot::fromHandle()
    /// reads the lens.
    virtual TransformSnapshot* getSnapshot(SceneNode* node, double time) = 0;
    virtual HelperSnapshot* getHelperSnapshot(SceneNode* node) = 0;
    virtual MeshSnapshot* getMeshSnapshot(SceneNode* node, double time) = 0;
    virtual std::intptr_t getLensSnapshot(SceneNode* node, double time) = 0;

    /// nodeQuery3 ends getMeshSnapshot(), nodeQuery4 getHelperSnapshot(), nodeQuery5 getSnapshot():
    /// call it once for each that wasn't null. The adaptor defines what the first two mean and when
    /// they may be called. All return 0 for a null node or a node without that handler.
    virtual std::intptr_t nodeQuery1(SceneNode* node) = 0;
    virtual std::intptr_t nodeQuery2(SceneNode* node) = 0;
    virtual std::intptr_t nodeQuery3(SceneNode* node) = 0;
    virtual std::intptr_t nodeQuery4(SceneNode* node) = 0;
    virtual std::intptr_t nodeQuery5(SceneNode* node) = 0;

    virtual double getTime() = 0;      ///< the host's current time
    virtual double getFrameRate() = 0; ///< frames per second
    virtual double getFrameStep() = 0; ///< seconds per frame
    /// Repaints the host's views; does nothing while a take runs.
    virtual void redraw() = 0;

    /// Asks the user. `flags`: low four bits the buttons (0 OK; 1 Yes, No; 2 Yes, No, Cancel; 3 OK,
    /// Cancel), the rest the icon (16 question, 32 stop, 48 exclamation). Returns 0 OK, 1 Cancel, 2
    /// Yes, 3 No. In silent mode the default answer comes at once. Otherwise the host's events go
    /// on meanwhile, and one of them may delete the tool, so don't call it in record().
    virtual std::int32_t messageBox(std::string text, std::string title, std::int32_t flags) = 0;

    virtual ~CInterface() = default;
};

} // namespace MVR
