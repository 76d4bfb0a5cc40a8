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

/// What a tool sees of the core and the host; one for each placed tool, owned by the core and valid
/// from the first extend() of the tool to its destroy().
///
/// When its operations may be called, unless their comments tell:
/// - What only reads: at any time from init() on. So getDataPath(), getSaveData(), times, rates,
///   createNode(name), snapshots that nothing is written to.
/// - What changes the scene: in create() and load(), and in takes, where a step of the host's undo
///   list is open. So addUndo(), destroyNode(), createNode() with a kind, writing to snapshots.
///   Keys are written in record() and finishRecording() only. Elsewhere, say in answer to a button,
///   whether such a change can be undone is the host's matter.
///
/// Times are seconds of scene time, other numbers as snapshots.h tells. Nodes and snapshots belong
/// to the host's adaptor. All calls must come on the host's user-interface thread. The order of the
/// virtual operations is frozen.
///
/// Extensions that extend() answers, from init() on:
///
/// | id | data | result |
/// |----|------|--------|
/// | 38 | NodeTimeRecord* | what the node answers |
/// | 39 | a record whose second field is a node, or null | 0 |
/// | 41 | VirtualControlRecord* | the new virtual control, owned by the core |
/// | 43 | not used | 0; takes the tool and its scene objects out of the scene |
/// | 55 | std::string* | 0; receives the parent tool's name, if there is one |
/// | 56 | Tag* | 0; receives the chain of parents |
/// | 57 | ToolIdentity* | 0; receives the tool's name and type, see tool_identity.h |
///
/// 41 belongs into init(), so that saved bindings find the control. After 43 the tool may be gone:
/// it calls nothing more. What 55 and 56 tell is known within a file from extend(42) on; the tool
/// that the user places all of it below is the parent only after that.
class CInterface : public CExtendable {
public:
    /// Changes the choices of a combo. The core owns it; it lives as long as the tool.
    class ComboUpdater {
    public:
        /// At any time after endPanel().
        virtual void update(std::vector<std::string> choices) = 0;

    protected:
        ~ComboUpdater() = default;
    };

    /// Called after the user changed a control of the panel. The tool owns it.
    class Callback {
    public:
        /// `name` is the label that the control was added with. Comes between takes and in them,
        /// from the user's hand.
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

    /// The input property of this name, made if the tool has none yet. `acceptedKinds` are the
    /// kinds of control it can be bound to; `factory` is not used and may be null. The core owns
    /// the result, which lives as long as the tool. Call it in init(), so that saved bindings find
    /// the property.
    virtual UniDevice::Property* addProperty(std::string name, std::int32_t acceptedKinds,
                                             UniDevice::Property::Factory* factory) = 0;
    /// The input property of this name, or null.
    virtual UniDevice::Property* findProperty(std::string name) = 0;

    /// The panel: beginPanel(), then groups and controls, then endPanel(), all from init() and
    /// once; outside of that pair what adds does nothing. A `variable` must live as long as the
    /// tool. In a spinner, `input` true adds an input property named "Spinner: " + name that moves
    /// the value during a take; `unused` is not read.
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
    /// Null if no panel is being built.
    virtual ComboUpdater* addCombo(std::string name, std::string tooltip,
                                   std::vector<std::string> choices, std::string* variable,
                                   Callback* callback) = 0;
    virtual void addButton(std::string name, std::string tooltip, Callback* callback) = 0;

    /// Opens the tool's configuration dialog; does nothing if there is none. As the user asks, not
    /// while the tool is made.
    virtual void openConfiguration() = 0;
    /// Shows the present values of the tool's variables in the panel. At any time after endPanel().
    virtual void updatePanel() = 0;
    /// Opens the dialog in which the user binds inputs; 0 if none was made. As the user asks.
    virtual std::intptr_t openInputDialog() = 0;

    /// The folder of the tool's own data files; empty if the user's folders can't be found.
    virtual std::string getDataPath() = 0;

    /// Copies `size` bytes as the tool's saved block; called from CCamera::save().
    virtual void setSaveData(const void* bytes, std::int32_t size) = 0;
    /// The size of the saved block in bytes; stores its address unless `address` is null. The
    /// block stays the core's.
    virtual std::int32_t getSaveData(const void** address) = 0;
    /// Frees the saved block; at any time.
    virtual void clearSaveData() = 0;

    /// Deletes a node of this tool together with its scene object.
    virtual void destroyNode(SceneNode* node, std::intptr_t unused) = 0;

    /// The node of this tool with this name, or null.
    virtual SceneNode* createNode(std::string name) = 0;
    /// The node of this tool with this name, made if it is missing; null if the host can't.
    /// `kind` and `parent` are as in AdaptorInterface::createNode.
    virtual SceneNode* createNode(std::string name, std::intptr_t kind, std::intptr_t parent) = 0;
    /// The same, with a mesh; `mesh` is a CMesh*, which the caller keeps.
    virtual SceneNode* createNode(std::string name, std::intptr_t kind, std::intptr_t mesh,
                                  std::intptr_t parent) = 0;
    /// Does nothing.
    virtual void createNode(std::string name, CMesh mesh) = 0;

    /// Snapshots of a node, for reading and animating it. Null for a null node (logged), or if the
    /// host has none. Give each back before the next of its kind on that node, which the scoped
    /// ones of scoped_snapshot.h do. The lens comes as LensSnapshot::fromHandle() reads it.
    virtual TransformSnapshot* getSnapshot(SceneNode* node, double time) = 0;
    virtual HelperSnapshot* getHelperSnapshot(SceneNode* node) = 0;
    virtual MeshSnapshot* getMeshSnapshot(SceneNode* node, double time) = 0;
    virtual std::intptr_t getLensSnapshot(SceneNode* node, double time) = 0;

    /// nodeQuery3 ends getMeshSnapshot(), nodeQuery4 getHelperSnapshot(), nodeQuery5 getSnapshot():
    /// once for each that wasn't null. The meaning of the first two lies with the adaptor, as does
    /// when they may be called. 0 for a null node or a node without that handler.
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

    /// Asks the user. `flags`: low four bits the buttons (0 OK; 1 Yes, No; 2 Yes, No, Cancel;
    /// 3 OK, Cancel), the rest the icon (16 question, 32 stop, 48 exclamation). Returns 0 OK,
    /// 1 Cancel, 2 Yes, 3 No. In silent mode the default answer comes at once. Else the host's
    /// events go on meanwhile, and the tool may be deleted by one: not in record().
    virtual std::int32_t messageBox(std::string text, std::string title, std::int32_t flags) = 0;

    virtual ~CInterface() = default;
};

} // namespace MVR
