#pragma once

#include "data/sdk/tag.h"

#include <cstdint>
#include <string>
#include <vector>

namespace MVR {

class CInterface;
class SceneNode;

/// A tool of the tree, as CoreTools::list() returns it.
struct CoreTool {
    std::string name; ///< unique among the tools; identifies it in all calls
    std::string type; ///< the kind of tool
    /// The index of its parent in the same list, lower than its own; -1 directly under the root.
    std::int32_t parent = -1;
    bool isChecked = true; ///< participates in takes
    /// The tool's own view of the core, by which the adaptor's operations name it. The core owns
    /// it; valid until the tool's end. A tool that was removed lives on in the host's undo list,
    /// and comes back as the same object.
    CInterface* access = nullptr;
    std::vector<SceneNode*> nodes; ///< from AdaptorInterface::getNodes(); owned by the adaptor
};

/// An input of a tool, as CoreTools::listInputs() returns it.
struct CoreToolInput {
    std::string name;          ///< unique among the tool's inputs
    std::int32_t kindMask = 0; ///< which controls it accepts: bits of UniDevice::ControlKind
    bool isBound = false;      ///< a control drives it now; a resimulation's stored values do too
    double value = 0.0;        ///< what the control holds, before the mapping; 0 for none
};

/// The tree of tools: what is in it, and how a host changes it.
///
/// getTools() in core_extensions.h returns it. The core owns it. All calls come on the host's
/// thread. Codes are those of ErrorCode, 0 for success; a name that no tool has returns that of
/// "MODEL_NOTOOL". The root isn't a tool: it is in no list, and its name finds nothing. A later
/// version adds operations at the end.
///
/// To hear of changes, make a Util::MessageNode of your own listen to the core:
/// 1. listener.listenTo(core).
/// 2. receive() gets one message kListChanged at the end of each change, when the tree is complete
///    again: tools were created, removed, renamed or moved, by whomever or whatever. It may call
///    the core, list() above all, but not `detach`. A model of fifty tools is one change, and so is
///    undoing or redoing it: the core learns of it from the objects that it has put into the host's
///    undo list.
/// 3. `detach` ends the link, with a message Util::StopBroadcasting; or stopListeningTo(core).
///    No message tells of the tools that end with the attachment.
class CoreTools {
public:
    static constexpr std::int32_t kVersion = 1;
    /// Id of the message that the core broadcasts; both its arguments are 0.
    static constexpr std::int32_t kListChanged = 20600;

    virtual std::int32_t getVersion() = 0;
    /// Returns all tools, each before those below it, in the order of the tree. Asks the adaptor
    /// for the nodes of each. A tool is listed only when it is fully made; until then an adaptor
    /// knows it by getToolIdentity().
    virtual std::vector<CoreTool> list() = 0;
    /// Returns the tool of that name, or null if there is none.
    virtual CInterface* find(std::string name) = 0;

    /// Creates one tool of the kind `type` (an entry's "type" in the catalogue) as the last one
    /// below the tool `parent`, or under the root if that is "", as one undo step. `name` is made
    /// unique; a blank one stands for the kind's own. `bindings` is an element "profile" as
    /// getBindings() returns it; if it is empty, the kind's start preset applies, if there is one.
    /// `createdName`, unless null, receives the name of the new tool. Allowed during a take, in
    /// which the new tool doesn't participate. CoreFaults lists a control that isn't there; it
    /// doesn't change the code. Returns 0, or the code of
    /// - "MODEL_NOTOOL": there is no tool `parent`.
    /// - "TOOL_BADPROFILE": `bindings` is another element.
    /// - "PLUGINNOTFOUND": there is no such kind of tool.
    /// - "TOOL_NOTCREATED": the tool refused; CoreFaults has its own code and text.
    /// Unless it returns 0, nothing changed, and `createdName` is as it was.
    [[nodiscard]] virtual std::int32_t create(std::string type, std::string name,
                                              std::string parent, Tag bindings,
                                              std::string* createdName) = 0;
    /// Gives the tool the name `wanted`, made unique; `taken`, unless null, receives the name that
    /// it has now. Scene objects keep theirs. Not undoable. Returns 0, or the code of
    /// "MODEL_NOTOOL", or of "TOOL_BADNAME" for a blank name.
    [[nodiscard]] virtual std::int32_t rename(std::string name, std::string wanted,
                                              std::string* taken) = 0;
    /// Removes the tool and all below it from the tree as one undo step, with their scene objects
    /// if `withObjects`. Allowed during a take, which goes on without them.
    [[nodiscard]] virtual std::int32_t remove(std::string name, bool withObjects) = 0;
    /// Selects the tool, which may select its object in the host; "" selects none.
    [[nodiscard]] virtual std::int32_t select(std::string name) = 0;
    /// Returns the name of the selected tool; "" if there is none.
    virtual std::string getSelected() = 0;

    /// Returns the tool's inputs: an element "profile" with an element "property" each, which has
    /// the mapping as children "multiplier", "exponent", "deadzone" and "offset", and, if it is
    /// bound, a child "control" that names the control. Numbers have all their digits: reading one
    /// returns the same bits. Returns an empty tag for an unknown name. During a resimulation there
    /// are only controls of tools that run too: the stored input replaces the others.
    virtual Tag getBindings(std::string name) = 0;
    /// Binds the tool's inputs as such an element says. An input that it doesn't name is unbound
    /// and keeps its mapping. `missing`, unless null, receives the number of controls that aren't
    /// there; their inputs stay unbound. Not undoable. Returns 0, or the code of "MODEL_NOTOOL", of
    /// "TOOL_BADPROFILE" for another element, or of "ALREADYRECORDING" during a take or a
    /// resimulation; then nothing changed.
    [[nodiscard]] virtual std::int32_t setBindings(std::string name, Tag profile,
                                                   std::int32_t* missing) = 0;
    /// Returns the same as CoreInterface::getConfiguration(), but the mappings have all their
    /// digits, where files of the core have six: a scene that is opened again simulates to the same
    /// bits.
    virtual Tag getExactConfiguration() = 0;
    /// Returns the tool's inputs in the order in which it made them, with their present values:
    /// during a take those of the frame. Empty for an unknown name.
    virtual std::vector<CoreToolInput> listInputs(std::string name) = 0;
    /// Changes the mapping of one input of the tool: `property` is an element "property" as in
    /// getBindings(), and those of its children "multiplier", "exponent", "deadzone" (which must
    /// not be 1) and "offset" that are numbers replace the present ones. Binds nothing: a control
    /// in the element is ignored, and what is kept of the input stays. An element of getBindings()
    /// restores the mapping to the bit. Allowed at any time; a take or a resimulation has the new
    /// mapping from its next frame on. Not undoable. Returns 0, or the code of "MODEL_NOTOOL", of
    /// "TOOL_BADPROFILE" for another element, or of "TOOL_NOINPUT" if the tool has no input of that
    /// name; then nothing changed.
    [[nodiscard]] virtual std::int32_t setMapping(std::string name, Tag property) = 0;
    /// Returns the scene times in seconds between which the tools have recorded input. A
    /// resimulation beyond them repeats the values at their ends. Returns false, with both
    /// unchanged, if no tool has any. Allowed at any time.
    [[nodiscard]] virtual bool getRecordedSpan(double* start, double* end) = 0;

protected:
    ~CoreTools() = default;
};

} // namespace MVR
