/// \file
/// The packed form of a tree. Both functions may be called at any time.
#pragma once

#include "data/sdk/tag.h"

#include <string_view>

namespace MVR {

/// The tree in its packed form: an element of that name with the attribute compressed="1", whose
/// text is the base64 of the tree's compressed text.
Tag packTag(const Tag& tree, std::string_view name);

/// Puts the tree in place of its packed form. What isn't packed stays as it is, which is a success.
/// False, with the element unchanged, if the text is no base64, what comes out of it no tree, or
/// such an element nested in the tree packed again.
[[nodiscard]] bool unpackTag(Tag& element);

} // namespace MVR
