#pragma once

#include "data/tag.h"

#include <string_view>
#include <vector>

namespace MVR {

// Builds a tree from text in one pass, without recursion.
class TagReader {
public:
    // The text ends at its first zero byte. It must outlive the reader.
    explicit TagReader(std::string_view text);

    // Reads the root element into an empty Tag; the codes are those of `Tag::parse`.
    [[nodiscard]] std::int32_t readInto(Tag& root);

private:
    enum class TokenKind { Text, Open, Close, Empty, Comment };
    struct Token {
        TokenKind kind;
        std::string_view text; // Not decoded; never empty.
    };
    struct RawAttribute {
        std::string_view key;
        std::string_view value; // Not decoded.
    };

    bool next(Token& token);
    void cutTag(Token& token, const char* first);
    std::int32_t readChildren(Tag& root);
    std::int32_t fill(Tag& node, const Token& token);
    std::int32_t scanAttributes(const char* at, const char* end);
    void storeAttributes(Tag& node);
    void decode(std::string_view markup, std::string& out);

    const char* at_;
    const char* end_;
    std::vector<Tag*> open_;               // From the root to the element that is being read.
    std::vector<RawAttribute> attributes_; // Of one tag; kept to be used again.
    std::string decoded_;                  // Likewise.
};

} // namespace MVR
