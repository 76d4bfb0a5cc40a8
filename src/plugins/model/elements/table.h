// All elements of a model, each of which is a unit of its own.
#pragma once

#include "plugins/model/elements/element.h"

#include <string_view>

namespace MVR {

/// Writes those of a tool's elements that its mask lets through. Returns false if the tool ended
/// meanwhile.
[[nodiscard]] bool saveElements(const ToolSaving& tool, Tag& out);
/// Reads those of a tool's elements whose moment has come, one that precedes the passes. The tool
/// may end meanwhile.
void loadElements(Moment moment, ToolLoading& tool, const Tag& data);
/// Reads those that belong to the stages of a pass.
void loadStages(ToolLoading& tool, const Tag& data);

/// The same for the element "nodeinfo" of a tool, and for the element of one scene node.
void saveNodeInfo(const ToolSaving& tool, Tag& out);
void loadNodeInfo(ToolLoading& tool, const Tag& nodeInfo);
void saveNode(const NodeSaving& node, Tag& out);
void loadNode(NodeLoading& node, const Tag& data);

/// Returns true if a word is in the table.
[[nodiscard]] bool isElementOfTool(std::string_view word);
[[nodiscard]] bool isElementOfNodeInfo(std::string_view word);
[[nodiscard]] bool isElementOfNode(std::string_view word);

/// Returns true if `mask` lets an element of a node through; it does so for any unknown word.
[[nodiscard]] bool isWrittenOfNode(std::string_view word, std::uint32_t mask);

/// The bits of all elements that are read at a moment.
[[nodiscard]] std::uint32_t bitsOf(Moment moment);

} // namespace MVR
