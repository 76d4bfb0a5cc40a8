#pragma once

#include "data/sdk/tag.h"

#include <string>
#include <string_view>
#include <vector>

namespace MVR {

// Writes a tree as text, without recursion.
class TagWriter {
public:
    // Both texts must outlive the writer.
    TagWriter(std::string_view newline, std::string_view indentUnit)
        : newline_(newline), indentUnit_(indentUnit) {}

    // Appends the tree. Stops and returns false if elements with children are nested more than
    // `maxDepth` levels deep.
    [[nodiscard]] bool write(const Tag& root, std::string_view indent, std::size_t maxDepth,
                             std::string& out);

private:
    // An element whose children are being written.
    struct Open {
        Tag* next; // Null after the last child.
        const Tag* element;
        Tag::ChildBlock* block;
        bool isInline;
    };

    void begin(const Tag& node);
    void beginElement(const Tag& element);
    void attributes(const Tag& element);
    void finish();

    std::string_view newline_;
    std::string_view indentUnit_;
    std::string indent_;
    std::string* out_ = nullptr;
    std::vector<Open> open_;
};

} // namespace MVR
