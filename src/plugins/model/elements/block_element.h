#pragma once

#include "data/base64_codec.h"
#include "data/sdk/tag.h"

#include <cstddef>
#include <string>
#include <utility>

namespace MVR {

/// An element that holds some bytes as base64.
inline Tag blockElement(const char* word, const void* bytes, std::size_t size) {
    Base64Writer text(size);
    text.append(bytes, size);
    Tag element = Tag::element(word);
    Tag value = Tag::textNode("");
    value.setName("") = text.finish(); // moved: a scene holds many, and large ones
    element.addChild(std::move(value));
    return element;
}

} // namespace MVR
