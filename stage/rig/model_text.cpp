#include "stage/rig/model_text.h"

#include "data/sdk/base64_buffer.h"
#include "data/sdk/byte_buffer.h"
#include "data/sdk/packed_tag.h"
#include "data/sdk/tag.h"

#include <cstddef>
#include <string_view>
#include <utility>
#include <vector>

namespace Stage {

namespace {

using MVR::Tag;

/// The most bytes of text, all packed elements together; a tree needs many times as many.
constexpr std::size_t kMostTextBytes = std::size_t(256) << 20;

/// Parses compressed or plain text; `left` is how much text may still come.
bool unpack(const MVR::ByteBuffer& block, Tag& out, std::size_t& left, std::string& error) {
    const MVR::ByteBuffer text = block.decompress();
    if (text.size() > left) {
        error = "its text is too large";
        return false;
    }
    left -= text.size();
    Tag::Place fault;
    const std::int32_t code = out.parse(text.view(), fault);
    if (code != 0) {
        error = "line " + std::to_string(fault.line) + ", column " + std::to_string(fault.column) +
                ": " + Tag::describeFault(code);
    }
    return code == 0;
}

/// Replaces an element that holds a packed tree by that tree.
bool unpackElement(Tag& element, std::size_t& left, std::string& error) {
    const MVR::Base64Buffer block(element.value());
    Tag tree;
    if (block.size() == 0) {
        error = "its text isn't base64";
    } else if (unpack(block.bytes(), tree, left, error)) {
        element = std::move(tree);
        return true;
    }
    return false;
}

} // namespace

bool toModelText(const std::string& bytes, std::string& out, std::string& error) {
    std::size_t left = kMostTextBytes;
    Tag tree;
    if (!unpack(MVR::ByteBuffer(bytes.data(), bytes.size()), tree, left, error))
        return false;
    std::size_t packed = 0;
    std::vector<Tag*> waiting = {&tree}; // the next one last
    while (!waiting.empty()) {
        Tag& tag = *waiting.back();
        // A packed tree may hold packed ones: it is looked at again.
        if (MVR::isPacked(tag)) {
            ++packed;
            if (!unpackElement(tag, left, error)) {
                error = "packed element " + std::to_string(packed) + ": " + error;
                return false;
            }
            continue;
        }
        waiting.pop_back();
        for (std::int32_t i = tag.childCount(); i-- > 0;)
            waiting.push_back(&tag.child(i));
    }
    out = tree.toText("\n", "\t", "") + "\n";
    return true;
}

} // namespace Stage
