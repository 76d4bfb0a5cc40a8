#include "data/tag_reader.h"

#include "core/base/sdk/log.h"
#include "data/tag_blocks.h"
#include "platform/byte_scan.h"
#include "platform/sdk/files.h"

#include <algorithm>
#include <cstring>
#include <istream>
#include <locale>
#include <sstream>
#include <utility>

namespace MVR {

using Platform::findAny;
using Platform::findByte;
using Platform::findSpaceOr;
using Platform::skipSpace;

namespace {

enum Code : std::int32_t {
    kSuccess = 0,
    kNoFile = Tag::kNotOpened,
    kNoRoot = 2,
    kUnclosed = 3,
    kWrongClose = 4,
    kBadAttribute = 5,
    kTooDeep = 6
};

// Decoded text up to this size goes through a buffer that is reused, so the result occupies no more
// memory than it needs. Larger text is decoded in place.
constexpr std::size_t kSmallText = 4096;

// More siblings than these are moved into their parent in several blocks, so that a wide tree isn't
// in memory twice.
constexpr std::size_t kSiblingsAtOnce = 256;

int hexDigit(char c) {
    if (c >= '0' && c <= '9')
        return c - '0';
    if (c >= 'a' && c <= 'f')
        return c - 'a' + 10;
    if (c >= 'A' && c <= 'F')
        return c - 'A' + 10;
    return -1;
}

std::string_view view(const char* begin, const char* end) {
    return {begin, static_cast<std::size_t>(end - begin)};
}

// Most keys of an element differ in their first byte, which saves a call.
bool precedes(std::string_view a, std::string_view b) {
    if (a.empty() || b.empty() || a[0] == b[0])
        return a < b;
    return static_cast<unsigned char>(a[0]) < static_cast<unsigned char>(b[0]);
}

// Appends the byte that the reference at `at` ("&#") stands for and returns the position after it.
// A reference without digits is a zero byte, as is one without a digit of its own base.
const char* decodeReference(const char* at, const char* end, std::string& out) {
    at += 2;
    const bool hexadecimal = at != end && *at == 'x';
    at += hexadecimal;
    unsigned char number = 0; // Only the low 8 bits of a number count.
    bool counts = true;
    for (int digit; at != end && (digit = hexDigit(*at)) >= 0; ++at) {
        counts = counts && (hexadecimal || digit < 10);
        if (counts)
            number = static_cast<unsigned char>(number * (hexadecimal ? 16 : 10) + digit);
    }
    out.push_back(static_cast<char>(number));
    return at == end ? end : at + 1;
}

void decodeInto(std::string_view markup, std::string& out) {
    out.clear();
    out.reserve(markup.size());
    const char* at = markup.data();
    const char* const end = at + markup.size();
    while (at != end) {
        const char* reference = findByte(at, end, '&');
        while (reference != end && (end - reference < 2 || reference[1] != '#'))
            reference = findByte(reference + 1, end, '&');
        out.append(at, reference);
        at = reference == end ? end : decodeReference(reference, end, out);
    }
}

} // namespace

TagReader::TagReader(std::string_view text)
    : begin_(text.data()), at_(begin_), end_(findByte(at_, at_ + text.size(), '\0')) {}

// Nothing is left here unless memory ran out.
TagReader::~TagReader() {
    drop(0);
}

std::int32_t TagReader::failAt(const char* place, std::int32_t code) {
    fault_ = place;
    return code;
}

Tag::Place TagReader::faultPlace() const {
    const char* const fault = fault_ ? fault_ : end_;
    const std::string_view before = view(begin_, fault);
    const std::size_t lineStart = before.rfind('\n') + 1; // 0 in the first line
    return {static_cast<std::int32_t>(1 + std::count(begin_, fault, '\n')),
            static_cast<std::int32_t>(1 + before.size() - lineStart)};
}

bool TagReader::next(Token& token) {
    while (at_ != end_) {
        const char* first = skipSpace(at_, end_);
        if (first == end_ || *first != '<') {
            cutText(token, first);
            return true;
        }
        if (cutTag(token, first + 1))
            return true;
    }
    return false;
}

// Reads the text that begins at `at_` into `token`; `first` is its first byte that is no space.
void TagReader::cutText(Token& token, const char* first) {
    const char* last = findAny(first, end_, '<', '&');
    const bool hasReference = last != end_ && *last == '&';
    if (hasReference)
        last = findByte(last, end_, '<');
    token = {TokenKind::Text, hasReference, view(at_, last), nullptr};
    at_ = last;
}

// Reads what is between the brackets of a tag, from `begin` on. Returns false if nothing is.
bool TagReader::cutTag(Token& token, const char* begin) {
    if (begin == end_ || (*begin != '/' && *begin != '!'))
        return cutElement(token, begin);
    const bool closes = *begin++ == '/';
    const char* const last = findByte(begin, end_, '>');
    if (closes && last != end_ && last != begin && last[-1] == '/')
        return cutElement(token, begin);
    const bool hasReference = findByte(begin, last, '&') != last;
    token = {closes ? TokenKind::Close : TokenKind::Comment, hasReference, view(begin, last),
             nullptr};
    endTag(last);
    return last != begin;
}

bool TagReader::cutElement(Token& token, const char* begin) {
    const char* at = findSpaceOr(begin, end_, '>', '&');
    token = {TokenKind::Open, at != end_ && *at == '&', {}, nullptr};
    if (token.hasReference)
        at = findSpaceOr(at + 1, end_, '>');
    const char* nameEnd = at;
    if (at == begin) // Blanks before the first word: no name; skip the word.
        at = findSpaceOr(skipSpace(at, end_), end_, '>');
    attributes_.clear();
    if (at != end_ && *at != '>')
        at = scanAttributes(token, at);
    const char* last = at;
    if (at != end_ && at != begin && at[-1] == '/') {
        token.kind = TokenKind::Empty;
        nameEnd = std::min(nameEnd, --last);
    }
    token.text = view(begin, nameEnd);
    endTag(at);
    return last != begin;
}

// Continues after the bracket at `last`, which may be the end of the text.
void TagReader::endTag(const char* last) {
    at_ = last == end_ ? end_ : last + 1;
}

// Returns the position of the bracket that ends the tag, or the end of the text.
const char* TagReader::scanAttributes(Token& token, const char* at) {
    while (at != end_ && *at != '>') {
        if (*at == '/' && end_ - at > 1 && at[1] == '>')
            return at + 1;
        const char* const key = skipSpace(at, end_);
        if (key != end_ && *key == '?')
            return findByte(key, end_, '>');
        at = findSpaceOr(key, end_, '=', '>');
        const char* const keyEnd = at;
        bool hasReference = false;
        if (end_ - at > 1 && *at == '=' && (at[1] == '"' || at[1] == '\'')) {
            const char quote = at[1];
            at = findAny(keyEnd + 2, end_, quote, '>', '&');
            hasReference = at != end_ && *at == '&';
            if (hasReference)
                at = findAny(at + 1, end_, quote, '>');
        }
        if (at == keyEnd || at == end_ || *at == '>') {
            token.fault = key;
            return findByte(at, end_, '>');
        }
        attributes_.push_back({view(key, keyEnd), view(keyEnd + 2, at), hasReference});
        ++at;
    }
    return at;
}

std::int32_t TagReader::readInto(Tag& root) {
    Token token;
    if (!next(token))
        return kNoRoot;
    if (token.kind != TokenKind::Open && token.kind != TokenKind::Empty)
        return failAt(token.text.data(), kNoRoot);
    if (token.text.substr(0, 1) == "?" && !next(token))
        return kBadAttribute;
    Node& first = nodes_.emplace_back();
    std::int32_t code = fill(first, token);
    if (code == kSuccess && token.kind == TokenKind::Open) {
        open_.push_back(0);
        code = readChildren();
    }
    // A close tag instead of the root leaves nothing.
    if (nodes_[0].kind != Tag::None)
        root = makeTag(nodes_[0]);
    return code;
}

std::int32_t TagReader::readChildren() {
    std::int32_t code = kSuccess;
    while (!open_.empty() && code == kSuccess) {
        Token token;
        if (!next(token)) {
            code = failAt(nodes_[open_.back()].text.data(), kUnclosed);
        } else if (token.kind != TokenKind::Close) {
            code = readChild(token);
        } else if (closes(nodes_[open_.back()], token.text)) {
            keepChildren(open_.back());
            open_.pop_back();
        } else {
            code = failAt(token.text.data(), kWrongClose);
        }
    }
    if (code != kSuccess) {
        // A child that failed is dropped with all that was read into it.
        if (open_.size() > 1)
            drop(open_[1]);
        keepChildren(0);
    }
    return code;
}

std::int32_t TagReader::readChild(const Token& token) {
    if (token.kind == TokenKind::Open && open_.size() == Tag::kMaxDepth) {
        Log(Log::Error)
            .write("Too many nested elements in text, at most", Tag::kMaxDepth, Log::OwnLevel);
        return failAt(token.text.data(), kTooDeep);
    }
    if (nodes_.size() - open_.back() > kSiblingsAtOnce)
        keepChildren(open_.back());
    Node& child = nodes_.emplace_back();
    const std::int32_t code = fill(child, token);
    if (code == kSuccess && token.kind == TokenKind::Open)
        open_.push_back(nodes_.size() - 1);
    else if (code != kSuccess || child.text.empty())
        drop(nodes_.size() - 1);
    return code;
}

// A close tag is compared undecoded with the decoded name.
bool TagReader::closes(const Node& node, std::string_view closeTag) {
    return node.hasReference ? closeTag == decode(node.text) : closeTag == node.text;
}

// Makes the nodes after an element its children.
void TagReader::keepChildren(std::size_t parent) {
    Node& owner = nodes_[parent];
    for (std::size_t i = parent + 1; i < nodes_.size(); ++i) {
        Tag::ChildBlock* block = owner.lastBlock;
        if (!block || block->count == block->capacity) {
            const auto left = static_cast<std::uint32_t>(nodes_.size() - i);
            block = Tag::ChildBlock::create(std::max(left, owner.childCount), block, &pool_);
            owner.lastBlock = block;
        }
        new (block->end()) Tag(makeTag(nodes_[i]));
        ++block->count;
        ++owner.childCount;
    }
    nodes_.resize(parent + 1);
}

// Frees what the nodes from `first` on hold.
void TagReader::drop(std::size_t first) {
    for (std::size_t i = first; i < nodes_.size(); ++i) {
        Tag dropped;
        dropped.attributes_ = nodes_[i].attributes;
        dropped.lastBlock_ = nodes_[i].lastBlock;
    }
    nodes_.resize(first);
}

// Leaves the node empty.
Tag TagReader::makeTag(Node& node) {
    Tag tag(node.kind, node.hasReference ? std::string_view() : node.text);
    if (node.hasReference)
        tag.text_ = decode(node.text);
    tag.attributes_ = std::exchange(node.attributes, nullptr);
    tag.lastBlock_ = std::exchange(node.lastBlock, nullptr);
    tag.childCount_ = node.childCount;
    return tag;
}

std::int32_t TagReader::fill(Node& node, const Token& token) {
    node.text = token.text;
    node.hasReference = token.hasReference;
    switch (token.kind) {
    case TokenKind::Text:
        node.kind = Tag::Text;
        return kSuccess;
    case TokenKind::Comment:
        node.kind = Tag::Comment;
        return kSuccess;
    case TokenKind::Close:
        return failAt(token.text.data(), kNoRoot);
    case TokenKind::Open:
    case TokenKind::Empty:
        break;
    }
    node.kind = Tag::Element;
    if (!attributes_.empty())
        storeAttributes(node);
    return token.fault ? failAt(token.fault, kBadAttribute) : kSuccess;
}

void TagReader::storeAttributes(Node& node) {
    // Our own files have them in order.
    const auto disorder = [](const RawAttribute& a, const RawAttribute& b) {
        return !precedes(a.key, b.key);
    };
    if (std::adjacent_find(attributes_.begin(), attributes_.end(), disorder) != attributes_.end())
        orderAttributes();
    std::size_t keyBytes = 0;
    for (const RawAttribute& raw : attributes_)
        keyBytes += raw.key.size();
    node.attributes = Tag::AttributeBlock::create(static_cast<std::uint32_t>(attributes_.size()),
                                                  keyBytes, &pool_);
    for (const RawAttribute& raw : attributes_) {
        Tag::Attribute& added =
            node.attributes->add(raw.key, raw.hasReference ? std::string_view() : raw.value);
        if (raw.hasReference)
            added.value = decode(raw.value);
    }
}

// Sorts by key; of equal keys only the last in the text remains.
void TagReader::orderAttributes() {
    std::sort(
        attributes_.begin(), attributes_.end(),
        [](const RawAttribute& a, const RawAttribute& b) {
            const int order = a.key.compare(b.key);
            return order != 0 ? order < 0 : a.key.data() > b.key.data();
        });
    const auto same = [](const RawAttribute& a, const RawAttribute& b) { return a.key == b.key; };
    attributes_.erase(std::unique(attributes_.begin(), attributes_.end(), same), attributes_.end());
}

std::string TagReader::decode(std::string_view markup) {
    if (markup.size() <= kSmallText) {
        decodeInto(markup, decoded_);
        return decoded_;
    }
    std::string decoded;
    decodeInto(markup, decoded);
    return decoded;
}

const char* Tag::describeFault(std::int32_t code) {
    switch (static_cast<Code>(code)) {
    case kSuccess:
        return "no fault";
    case kNoFile:
        return "the file can't be read";
    case kNoRoot:
        return "no element where one was expected";
    case kUnclosed:
        return "an element isn't closed";
    case kWrongClose:
        return "a close tag of another element";
    case kBadAttribute:
        return "a fault in an attribute";
    case kTooDeep:
        return "too many nested elements";
    }
    return "an unknown fault";
}

std::int32_t Tag::read(std::istream& stream) {
    std::string text;
    std::string line;
    while (std::getline(stream, line)) {
        if (!stream.eof() && !line.empty() && line.back() == '\r')
            line.pop_back();
        text += line;
    }
    return parse(text);
}

std::int32_t Tag::load(const std::string& path) {
    std::string text;
    if (!Platform::readFile(path, text))
        return kNotOpened;
    const char* const end = text.data() + text.size();
    char* out = text.data();
    for (const char* line = out; line != end;) {
        const char* next = findByte(line, end, '\n');
        const char* lineEnd = next != end && next != line && next[-1] == '\r' ? next - 1 : next;
        std::memmove(out, line, lineEnd - line);
        out += lineEnd - line;
        line = next == end ? end : next + 1;
    }
    text.resize(out - text.data());
    return parse(text);
}

template <typename T>
bool Tag::as(T& out) const {
    std::istringstream stream(text_);
    stream.imbue(std::locale::classic());
    T number;
    if (!(stream >> number))
        return false;
    out = number;
    return true;
}

template bool Tag::as<bool>(bool&) const;
template bool Tag::as<short>(short&) const;
template bool Tag::as<unsigned short>(unsigned short&) const;
template bool Tag::as<int>(int&) const;
template bool Tag::as<unsigned int>(unsigned int&) const;
template bool Tag::as<long>(long&) const;
template bool Tag::as<unsigned long>(unsigned long&) const;
template bool Tag::as<long long>(long long&) const;
template bool Tag::as<unsigned long long>(unsigned long long&) const;
template bool Tag::as<float>(float&) const;
template bool Tag::as<double>(double&) const;

} // namespace MVR
