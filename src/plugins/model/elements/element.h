// What an element of a model is: its word, when it is written and read, and how.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>

namespace MVR {

class InstanceIndex;
class InstanceReference;
class KeptElements;
class ModelPlace;
class PluginInstance;
class SceneNode;
class Tag;

/// When an element is read.
enum class Moment : std::uint8_t {
    Making,     ///< to make the tool's object
    BeforeInit, ///< before the tool's first call
    Resuming,   ///< before load(), by a tool that was saved
    Started,    ///< after create() or load()
    // The rest is read when all tools exist, in the passes of InstanceReference::applyAttributes().
    EachPass,      ///< in each that has one of its bits
    Attributes,    ///< in the first, within the host's undo step
    Parents,       ///< in the last within the step
    HighPolyNames, ///< after the step
    Selection,     ///< last
};

/// A tool that is saved.
struct ToolSaving {
    InstanceReference& reference;
    PluginInstance& instance;
    std::uint32_t mask;             ///< bits of SaveMask
    KeptElements* behind = nullptr; ///< what is kept of "nodeinfo"; only while that is written
};

/// A tool that is loaded.
struct ToolLoading {
    InstanceReference& reference;
    PluginInstance& instance;
    const ModelPlace& place;
    std::string folder;             ///< of the model; only while the tool is made
    std::uint32_t stages = 0;       ///< bits of SaveMask; only in a pass
    InstanceIndex* index = nullptr; ///< the tools by name; only in a pass
    bool isSaved = false;           ///< the data has a saved block; only within "nodeinfo"
    std::int32_t code = 0;          ///< what the pass returns for this tool
    bool isBranchDone = false;      ///< the pass goes no further, nor to the tools below
};

/// One of the scene nodes of a tool.
struct NodeSaving {
    const ToolSaving& tool;
    SceneNode& node;
};
struct NodeLoading {
    ToolLoading& tool;
    SceneNode& node;
};

/// A row of the table of elements.
template <class Saving, class Loading>
struct ElementRow {
    std::string_view word;
    std::uint32_t bits; ///< of SaveMask: any of them lets it be written, or read in a pass
    Moment moment;
    std::int32_t turn; ///< among those that are read at one moment
    /// Appends the element to its parent's; null if it is only read. The tool may end meanwhile.
    void (*save)(const Saving& saved, Tag& parent);
    /// Applies what the parent's element has of it, if it has any; null if others ask for it.
    void (*load)(Loading& loaded, const Tag& parent);
};
using ToolElement = ElementRow<ToolSaving, ToolLoading>;
using NodeElement = ElementRow<NodeSaving, NodeLoading>;

} // namespace MVR
