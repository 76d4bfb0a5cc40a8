// The packed form of a tree. All functions may be called at any time.
#pragma once

#include "data/sdk/tag.h"

#include <string_view>

namespace MVR {

/// Returns the packed form of the tree: an element `name` with the attribute compressed="1", whose
/// text is the base64 of the tree's compressed text.
Tag packTag(const Tag& tree, std::string_view name);

/// Returns true for an element that says it is packed; its text may still be damaged.
[[nodiscard]] bool isPacked(const Tag& element);

/// Replaces a packed form by its tree. An element that isn't packed stays unchanged, which is a
/// success. Returns false, with the element unchanged, if the text is no base64 or holds no tree,
/// or if an element of the same name in that tree is packed again.
[[nodiscard]] bool unpackTag(Tag& element);

} // namespace MVR
