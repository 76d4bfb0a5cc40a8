#include "data/tag_writer.h"

#include "core/base/sdk/log.h"
#include "data/tag_blocks.h"
#include "platform/sdk/files.h"

#include <array>
#include <charconv>
#include <limits>

namespace MVR {
namespace {

constexpr std::string_view kHeader = "<?xml version=\"1.0\"?>\n";
constexpr std::size_t kNoLimit = std::numeric_limits<std::size_t>::max();

// For a text of this size memory is reserved at once.
constexpr std::size_t kLargeText = 65536;

// The number of bytes that each byte is written as: 1 for printable ASCII characters except "&" and
// "<", more for what becomes a reference.
using EncodedSizes = std::array<unsigned char, 256>;

constexpr EncodedSizes encodedSizes(bool quoteIsEncoded) {
    EncodedSizes sizes{};
    for (int byte = 0; byte < 256; ++byte) {
        const bool plain = byte >= 0x20 && byte <= 0x7E && byte != '&' && byte != '<' &&
                           !(quoteIsEncoded && byte == '"');
        const int digits = byte < 10 ? 1 : byte < 100 ? 2 : 3;
        sizes[byte] = static_cast<unsigned char>(plain ? 1 : 3 + digits);
    }
    return sizes;
}

constexpr EncodedSizes kEncoded = encodedSizes(false);
constexpr EncodedSizes kEncodedWithQuote = encodedSizes(true);

std::size_t sizeOf(char c, const EncodedSizes& sizes) {
    return sizes[static_cast<unsigned char>(c)];
}

// Estimates the size of the whole from its start; if more references follow, the string grows by
// itself.
void makeRoom(std::string_view text, const EncodedSizes& sizes, std::string& out) {
    std::size_t sample = 0;
    for (char c : text.substr(0, kLargeText))
        sample += sizeOf(c, sizes);
    const std::size_t encoded = text.size() / kLargeText * sample + sample;
    const std::size_t needed = out.size() + encoded + encoded / 32;
    if (needed / 2 > out.capacity()) // Else its own growth is enough.
        out.reserve(needed);
}

void encode(std::string_view text, const EncodedSizes& sizes, std::string& out) {
    if (text.size() >= kLargeText)
        makeRoom(text, sizes, out);
    const char* at = text.data();
    const char* const end = at + text.size();
    while (true) {
        const char* run = at;
        while (at != end && sizeOf(*at, sizes) == 1)
            ++at;
        out.append(run, at);
        if (at == end)
            return;
        char reference[8] = {'&', '#'};
        char* last = std::to_chars(reference + 2, reference + 6,
                                   static_cast<int>(static_cast<unsigned char>(*at)))
                         .ptr;
        *last++ = ';';
        out.append(reference, last);
        ++at;
    }
}

template <typename T, typename... Format>
std::string digits(T value, Format... format) {
    char buffer[64];
    return std::string(buffer, std::to_chars(buffer, buffer + sizeof buffer, value, format...).ptr);
}

} // namespace

bool TagWriter::write(const Tag& root, std::string_view indent, std::size_t maxDepth,
                      std::string& out) {
    out_ = &out;
    indent_ = indent;
    begin(root);
    while (!open_.empty()) {
        if (open_.size() > maxDepth)
            return false;
        Open& open = open_.back();
        if (!open.next) {
            finish();
            continue;
        }
        const Tag& child = *open.next;
        Tag::ChildBlock* const last = open.element->lastBlock_;
        if (++open.next == open.block->end()) {
            open.next = open.block == last ? nullptr : open.block->next->begin();
            open.block = open.block->next;
        }
        const bool textFollowsText =
            open.isInline && open.next && child.kind_ == Tag::Text && open.next->kind_ == Tag::Text;
        begin(child);
        if (textFollowsText)
            out += ' ';
    }
    return true;
}

// Writes a node, but of an element with children only what precedes them.
void TagWriter::begin(const Tag& node) {
    const std::size_t depth = open_.size();
    switch (node.kind_) {
    case Tag::Element:
        beginElement(node);
        break;
    case Tag::Text:
        encode(node.text_, kEncoded, *out_);
        break;
    case Tag::Comment:
        out_->append(indent_).append("<!-- ");
        encode(node.text_, kEncoded, *out_);
        out_->append("-- >");
        break;
    case Tag::None:
        break;
    }
    if (open_.size() == depth && depth > 0 && !open_.back().isInline)
        out_->append(newline_);
}

void TagWriter::beginElement(const Tag& element) {
    out_->append(indent_).push_back('<');
    encode(element.text_, kEncoded, *out_);
    if (element.attributes_)
        attributes(element);
    if (element.childCount_ == 0) {
        out_->append("/>");
        return;
    }
    out_->push_back('>');
    Tag::ChildBlock* block = element.lastBlock_->next;
    const bool isInline = block->begin()->kind_ == Tag::Text;
    if (!isInline)
        out_->append(newline_);
    open_.push_back({block->begin(), &element, block, isInline});
    indent_ += indentUnit_;
}

void TagWriter::attributes(const Tag& element) {
    for (const Tag::Attribute& attribute : *element.attributes_) {
        const bool hasDouble = attribute.value.find('"') != std::string::npos;
        const bool hasBoth = hasDouble && attribute.value.find('\'') != std::string::npos;
        const char quote = hasDouble && !hasBoth ? '\'' : '"';
        out_->push_back(' ');
        out_->append(element.attributes_->key(attribute)).append({'=', quote});
        encode(attribute.value, hasBoth ? kEncodedWithQuote : kEncoded, *out_);
        out_->push_back(quote);
    }
}

void TagWriter::finish() {
    const Open done = open_.back();
    open_.pop_back();
    indent_.resize(indent_.size() - indentUnit_.size());
    if (!done.isInline)
        out_->append(indent_);
    out_->append("</");
    encode(done.element->text_, kEncoded, *out_);
    out_->push_back('>');
    if (!open_.empty() && !open_.back().isInline)
        out_->append(newline_);
}

std::string Tag::toText(std::string_view newline, std::string_view indentUnit,
                        std::string_view indent) const {
    std::string text;
    static_cast<void>(TagWriter(newline, indentUnit).write(*this, indent, kNoLimit, text));
    return text;
}

bool Tag::save(const std::string& path) const {
    std::string text(kHeader);
    if (!TagWriter("\n", "\t").write(*this, "", kMaxDepth, text)) {
        Log(Log::Error).write("Not saved, too many nested elements", path, Log::OwnLevel);
        return false;
    }
    return Platform::writeFileAtomic(path, text);
}

Tag Tag::exactElement(std::string_view name, double value) {
    return element(name, std::string_view(digits(value)));
}

std::string Tag::numberText(double value) {
    return digits(value, std::chars_format::general, 6);
}

std::string Tag::numberText(long long value) {
    return digits(value);
}

std::string Tag::numberText(unsigned long long value) {
    return digits(value);
}

} // namespace MVR
