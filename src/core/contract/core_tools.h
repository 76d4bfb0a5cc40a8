#pragma once

#include "data/sdk/tag.h"

#include <cstdint>
#include <string>
#include <vector>

namespace MVR {

class CInterface;
class SceneNode;

/// A tool that stands in the tree, as CoreTools::list() tells it.
struct CoreTool {
    std::string name; ///< unique among the tools; identifies it in all calls
    std::string type; ///< the kind of tool
    /// The place of its parent in the same list, which is before its own; -1 directly under the
    /// root.
    std::int32_t parent = -1;
    bool isChecked = true; ///< takes part in takes
    /// The tool's own view of the core, by which the adaptor's operations name it. The core owns
    /// it; valid until the tool's end. A tool that was removed lives on in the host's undo list,
    /// and comes back as the same object.
    CInterface* access = nullptr;
    std::vector<SceneNode*> nodes; ///< what AdaptorInterface::getNodes() gave; the adaptor's
};

/// The tree of tools: what stands in it, and how a host changes it.
///
/// getTools() in core_extensions.h gives it. The core owns it. All calls come on the host's thread.
/// Codes are those of ErrorCode, 0 for success; MODEL_NOTOOL is that of a name that no tool has.
/// The root isn't a tool: it is in no list, and its name finds nothing. A later version adds
/// operations at the end.
///
/// To hear of changes, make a Util::MessageNode of your own listen to the core:
/// 1. listener.listenTo(core).
/// 2. receive() gets one message kListChanged at the end of each change, when the tree is whole
///    again: tools were created, removed, renamed or moved, by whom or what ever. It may call the
///    core, list() above all, but not `detach`. A model of fifty tools is one change, and so is
///    undoing or redoing it: the host's undo list tells the core by the objects that it has put
///    there.
/// 3. `detach` ends the link, with a message Util::StopBroadcasting; or stopListeningTo(core).
///    No message tells of the tools that end with the attachment.
class CoreTools {
public:
    static constexpr std::int32_t kVersion = 1;
    /// Id of the message that the core broadcasts; both its arguments are 0.
    static constexpr std::int32_t kListChanged = 20600;

    virtual std::int32_t getVersion() = 0;
    /// All tools, each before those below it, in the order of the tree. Asks the adaptor for the
    /// nodes of each. A tool in the making comes in when it is whole: until then an adaptor knows
    /// it by getToolIdentity().
    virtual std::vector<CoreTool> list() = 0;
    /// The tool of that name; null if there is none.
    virtual CInterface* find(std::string name) = 0;

    /// Creates one tool of the kind `type` (an entry's "type" in the catalogue) as the last one
    /// below the tool `parent`, or under the root if that is "", as one undo step. `name` is made
    /// unique; "" takes the kind's own. `bindings` is an element "profile" as getBindings() gives
    /// it; if it is empty the kind's start preset counts, if there is one. `createdName`, unless
    /// null, receives the name that the tool has got. Allowed during a take, in which the new tool
    /// takes no part. A control that isn't there is told by CoreFaults and makes no other code.
    /// 0, or the code of
    /// - "MODEL_NOTOOL": there is no tool `parent`.
    /// - "PLUGINNOTFOUND": there is no such kind of tool.
    /// - "TOOL_NOTCREATED": the tool refused; CoreFaults has its own code and text.
    /// Without success nothing changed, and `createdName` is as it was.
    [[nodiscard]] virtual std::int32_t create(std::string type, std::string name,
                                              std::string parent, Tag bindings,
                                              std::string* createdName) = 0;
    /// Gives the tool the name `wanted`, made unique; `taken`, unless null, receives the name that
    /// it has now. Scene objects keep theirs. Not undoable. The code of "MODEL_NOTOOL", or of
    /// "TOOL_BADNAME" for an empty name.
    [[nodiscard]] virtual std::int32_t rename(std::string name, std::string wanted,
                                              std::string* taken) = 0;
    /// Takes the tool and all below it out of the tree as one undo step, with their scene objects
    /// if `withObjects`. Allowed during a take, which goes on without them.
    [[nodiscard]] virtual std::int32_t remove(std::string name, bool withObjects) = 0;
    /// Selects the tool, which may select its object in the host; "" selects none.
    [[nodiscard]] virtual std::int32_t select(std::string name) = 0;
    /// The name of the selected tool; "" if there is none.
    virtual std::string getSelected() = 0;

    /// The tool's inputs: an element "profile" with an element "property" each, which has the
    /// mapping as children "multiplier", "exponent", "deadzone" and "offset", and, if it is bound,
    /// a child "control" that names the control. Numbers have all their digits: reading one gives
    /// the same bits. An empty tag for an unknown name. During a resimulation there are no
    /// controls: the stored input is in their place.
    virtual Tag getBindings(std::string name) = 0;
    /// Binds the tool's inputs as such an element tells. What it doesn't name is unbound and keeps
    /// its mapping. `missing`, unless null, receives the number of controls that aren't there;
    /// their inputs stay unbound. Not undoable. The code of "MODEL_NOTOOL", of "TOOL_BADPROFILE"
    /// for another element, of "ALREADYRECORDING" during a take or a resimulation; then nothing
    /// changed.
    [[nodiscard]] virtual std::int32_t setBindings(std::string name, Tag profile,
                                                   std::int32_t* missing) = 0;
    /// The same as CoreInterface::getConfiguration(), but the mappings have all their digits, where
    /// files of the core have six: a scene that is opened again simulates to the same bits.
    virtual Tag getExactConfiguration() = 0;

protected:
    ~CoreTools() = default;
};

} // namespace MVR
