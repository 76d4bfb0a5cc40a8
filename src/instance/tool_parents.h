// The tools above a tool in the tree, for its own questions.
#pragma once

namespace MVR {

class PluginInstance;
class Tag;

/// Returns the tool above `tool` in the tree, or null if that is the root or there is none.
[[nodiscard]] PluginInstance* getParentTool(const PluginInstance& tool);

/// Appends one "masternode" for `tool` and each above it whose object is in the scene, the
/// outermost first: what a tool needs to build its chain of parents again. Asks the tools for their
/// blocks from this one upwards.
void addMasterNodes(PluginInstance& tool, Tag& out);

} // namespace MVR
