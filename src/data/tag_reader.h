#pragma once

#include "data/sdk/tag.h"
#include "data/tag_blocks.h"

#include <string_view>
#include <vector>

namespace MVR {

// Builds a tree from text in one pass, without recursion.
class TagReader {
public:
    // The text ends at its first zero byte. It must outlive the reader.
    explicit TagReader(std::string_view text);
    TagReader(const TagReader&) = delete;
    TagReader& operator=(const TagReader&) = delete;
    ~TagReader();

    // Reads the root element into an empty Tag. Returns the codes of `Tag::parse`.
    [[nodiscard]] std::int32_t readInto(Tag& root);
    // Call after `readInto` returned another code than 0.
    [[nodiscard]] Tag::Place faultPlace() const;

private:
    enum class TokenKind { Text, Open, Close, Empty, Comment };
    struct Token {
        TokenKind kind;
        bool hasReference;     // In `text`.
        std::string_view text; // Not decoded. An element's name; only this may be empty.
        const char* fault;     // In its attributes; null for none.
    };
    struct RawAttribute {
        std::string_view key;
        std::string_view value; // Not decoded.
        bool hasReference;      // In `value`.
    };

    // A node of which only the children may still be unknown.
    struct Node {
        Tag::Kind kind;
        std::uint32_t childCount;
        std::string_view text; // Not decoded.
        bool hasReference;     // In `text`.
        Tag::AttributeBlock* attributes;
        Tag::ChildBlock* lastBlock;
    };

    bool next(Token& token);
    void cutText(Token& token, const char* first);
    bool cutTag(Token& token, const char* begin);
    bool cutElement(Token& token, const char* begin);
    void endTag(const char* last);
    const char* scanAttributes(Token& token, const char* at);
    std::int32_t readChildren();
    std::int32_t readChild(const Token& token);
    bool closes(const Node& node, std::string_view closeTag);
    void keepChildren(std::size_t parent);
    void drop(std::size_t first);
    Tag makeTag(Node& node);
    std::int32_t fill(Node& node, const Token& token);
    std::int32_t failAt(const char* place, std::int32_t code);
    void storeAttributes(Node& node);
    void orderAttributes();
    std::string decode(std::string_view markup);

    const char* begin_;
    const char* at_;
    const char* end_;
    const char* fault_ = nullptr; // In the text; null means its end.
    TagPool pool_;
    // The elements that are being read, each followed by those of its children that are complete
    // and not yet in a block. So a block is created when the number of its items is known, and
    // their texts are copied once.
    std::vector<Node> nodes_;
    std::vector<std::size_t> open_;        // Their indices in `nodes_`, from the root on.
    std::vector<RawAttribute> attributes_; // Of one tag; kept for reuse.
    std::string decoded_;                  // Likewise.
};

} // namespace MVR
