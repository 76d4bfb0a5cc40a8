// The packed form of a tree. All functions may be called at any time.
#pragma once

#include "data/sdk/tag.h"

#include <cstddef>
#include <string_view>

namespace MVR {

/// Returns the packed form of the tree: an element `name` with the attribute compressed="1", whose
/// text is the base64 of the tree's compressed text.
Tag packTag(const Tag& tree, std::string_view name);

/// Returns true for an element that says it is packed; its text may still be damaged.
[[nodiscard]] bool isPacked(const Tag& element);

/// Replaces a packed form by its tree, in which elements may be packed again: those stay so. An
/// element that isn't packed stays unchanged, which is a success. Returns false for a text that is
/// damaged: the element becomes the part of its tree before the damage, as Tag::parse() leaves it,
/// or stays unchanged if there is none.
[[nodiscard]] bool unpackTag(Tag& element);
/// The same for an element within an unpacked tree: each such level may make a text several times
/// larger. Returns false, with the element unchanged, if its text would need more than `bytesLeft`
/// bytes; otherwise lowers that by what it needs.
[[nodiscard]] bool unpackTag(Tag& element, std::size_t& bytesLeft);

} // namespace MVR
