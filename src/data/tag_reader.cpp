#include "data/tag_reader.h"

#include "core/log.h"
#include "data/tag_blocks.h"
#include "platform/files.h"

#include <algorithm>
#include <array>
#include <cstring>
#include <istream>
#include <locale>
#include <sstream>

namespace MVR {
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

// Decoded text up to this size goes through a buffer that is used again, so that it takes no more
// memory than it needs. Larger text is decoded in its place.
constexpr std::size_t kSmallText = 4096;

// Of one parent; more are moved into it in several blocks, so that a wide tree doesn't stand in
// memory twice.
constexpr std::size_t kSiblingsAtOnce = 256;

enum ByteClass : unsigned char { kOther = 0, kSpace = 1, kEquals = 2 };

constexpr std::array<unsigned char, 256> classifyBytes() {
    std::array<unsigned char, 256> classes{};
    for (char space : {' ', '\t', '\n', '\v', '\f', '\r'})
        classes[static_cast<unsigned char>(space)] = kSpace;
    classes['='] = kEquals;
    return classes;
}

constexpr std::array<unsigned char, 256> kClasses = classifyBytes();

unsigned classOf(char c) {
    return kClasses[static_cast<unsigned char>(c)];
}

int hexDigit(char c) {
    if (c >= '0' && c <= '9')
        return c - '0';
    if (c >= 'a' && c <= 'f')
        return c - 'a' + 10;
    if (c >= 'A' && c <= 'F')
        return c - 'A' + 10;
    return -1;
}

const char* find(const char* at, const char* end, char wanted) {
    const void* found = at == end ? nullptr : std::memchr(at, wanted, end - at);
    return found ? static_cast<const char*>(found) : end;
}

const char* skipSpace(const char* at, const char* end) {
    while (at != end && classOf(*at) == kSpace)
        ++at;
    return at;
}

const char* skipWord(const char* at, const char* end) {
    while (at != end && classOf(*at) != kSpace)
        ++at;
    return at;
}

std::string_view view(const char* begin, const char* end) {
    return {begin, static_cast<std::size_t>(end - begin)};
}

// Appends the byte that the reference at `at` ("&#") stands for, and gives the place behind it. A
// reference without digits is a zero byte, as is one whose number has none of its own base.
const char* decodeReference(const char* at, const char* end, std::string& out) {
    at += 2;
    const bool hexadecimal = at != end && *at == 'x';
    at += hexadecimal;
    unsigned char number = 0; // The low 8 bits are all that is wanted of any number.
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
        const char* reference = find(at, end, '&');
        while (reference != end && (end - reference < 2 || reference[1] != '#'))
            reference = find(reference + 1, end, '&');
        out.append(at, reference);
        at = reference == end ? end : decodeReference(reference, end, out);
    }
}

} // namespace

TagReader::TagReader(std::string_view text)
    : begin_(text.data()), at_(begin_), end_(find(at_, at_ + text.size(), '\0')) {}

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

// Puts what stands between the brackets of a tag, of which the first is at `first`, into `token`.
void TagReader::cutTag(Token& token, const char* first) {
    const char* begin = first + 1;
    token.kind = TokenKind::Open;
    if (begin != end_ && (*begin == '/' || *begin == '!')) {
        token.kind = *begin == '/' ? TokenKind::Close : TokenKind::Comment;
        ++begin;
    }
    const char* last = find(begin, end_, '>');
    at_ = last == end_ ? end_ : last + 1;
    if (last != end_ && last != begin && last[-1] == '/' && token.kind != TokenKind::Comment) {
        token.kind = TokenKind::Empty;
        --last;
    }
    token.text = view(begin, last);
}

bool TagReader::next(Token& token) {
    while (at_ != end_) {
        const char* first = skipSpace(at_, end_);
        if (first == end_ || *first != '<') {
            const char* last = find(first, end_, '<');
            token = {TokenKind::Text, view(at_, last)};
            at_ = last;
            return true;
        }
        cutTag(token, first);
        if (!token.text.empty())
            return true;
    }
    return false;
}

std::int32_t TagReader::readInto(Tag& root) {
    Token token;
    if (!next(token))
        return kNoRoot;
    if (token.kind != TokenKind::Open && token.kind != TokenKind::Empty)
        return failAt(token.text.data(), kNoRoot);
    if (token.text.front() == '?' && !next(token))
        return kBadAttribute;
    Node& first = nodes_.emplace_back();
    std::int32_t code = fill(first, token);
    if (code == kSuccess && token.kind == TokenKind::Open) {
        open_.push_back(0);
        code = readChildren();
    }
    // A close tag in place of the root leaves nothing.
    if (nodes_[0].kind != Tag::None) {
        root.~Tag();
        makeTag(nodes_[0], &root);
    }
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

// A close tag is compared as it stands, with the decoded name.
bool TagReader::closes(const Node& node, std::string_view closeTag) {
    return node.hasReference ? closeTag == decode(node.text) : closeTag == node.text;
}

// Makes the nodes behind an element its children.
void TagReader::keepChildren(std::size_t parent) {
    Node& owner = nodes_[parent];
    for (std::size_t i = parent + 1; i < nodes_.size(); ++i) {
        Tag::ChildBlock* block = owner.lastBlock;
        if (!block || block->count == block->capacity) {
            const auto left = static_cast<std::uint32_t>(nodes_.size() - i);
            block = Tag::ChildBlock::create(std::max(left, owner.childCount), block, &pool_);
            owner.lastBlock = block;
        }
        makeTag(nodes_[i], block->end());
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

void TagReader::makeTag(const Node& node, Tag* place) {
    Tag* tag = new (place) Tag(node.kind, node.hasReference ? std::string_view() : node.text);
    if (node.hasReference)
        tag->text_ = decode(node.text);
    tag->attributes_ = node.attributes;
    tag->lastBlock_ = node.lastBlock;
    tag->childCount_ = node.childCount;
}

std::int32_t TagReader::fill(Node& node, const Token& token) {
    node.text = token.text;
    const char* const begin = token.text.data();
    const char* const end = begin + token.text.size();
    const char* nameEnd = end;
    switch (token.kind) {
    case TokenKind::Text:
        node.kind = Tag::Text;
        break;
    case TokenKind::Comment:
        node.kind = Tag::Comment;
        break;
    case TokenKind::Close:
        return failAt(begin, kNoRoot);
    case TokenKind::Open:
    case TokenKind::Empty:
        node.kind = Tag::Element;
        nameEnd = skipWord(begin, end);
        node.text = view(begin, nameEnd);
        if (nameEnd == begin) // Blanks ahead of the first word: no name, and the word is passed.
            nameEnd = skipWord(skipSpace(begin, end), end);
    }
    node.hasReference = find(node.text.data(), node.text.data() + node.text.size(), '&') !=
                        node.text.data() + node.text.size();
    if (nameEnd == end)
        return kSuccess;
    const std::int32_t code = scanAttributes(nameEnd, end);
    storeAttributes(node);
    return code;
}

std::int32_t TagReader::scanAttributes(const char* at, const char* end) {
    attributes_.clear();
    while (at != end) {
        at = skipSpace(at, end);
        if (at != end && *at == '?')
            return kSuccess;
        const char* const key = at;
        while (at != end && classOf(*at) == kOther)
            ++at;
        if (end - at < 2 || *at != '=' || (at[1] != '"' && at[1] != '\''))
            return failAt(key, kBadAttribute);
        const char* const keyEnd = at;
        const char* const value = at + 2;
        at = find(value, end, at[1]);
        if (at == end)
            return failAt(key, kBadAttribute);
        attributes_.push_back({view(key, keyEnd), view(value, at)});
        ++at;
    }
    return kSuccess;
}

void TagReader::storeAttributes(Node& node) {
    if (attributes_.empty())
        return;
    // Our own files have them in order.
    const auto disorder = [](const RawAttribute& a, const RawAttribute& b) {
        return a.key >= b.key;
    };
    if (std::adjacent_find(attributes_.begin(), attributes_.end(), disorder) != attributes_.end())
        orderAttributes();
    node.attributes =
        Tag::AttributeBlock::create(static_cast<std::uint32_t>(attributes_.size()), &pool_);
    for (const RawAttribute& raw : attributes_) {
        new (node.attributes->end()) Tag::Attribute{std::string(raw.key), decode(raw.value)};
        ++node.attributes->count;
    }
}

// By key; of one key only the last in the text remains.
void TagReader::orderAttributes() {
    std::sort(attributes_.begin(), attributes_.end(),
              [](const RawAttribute& a, const RawAttribute& b) {
                  const int order = a.key.compare(b.key);
                  return order != 0 ? order < 0 : a.key.data() > b.key.data();
              });
    const auto same = [](const RawAttribute& a, const RawAttribute& b) { return a.key == b.key; };
    attributes_.erase(std::unique(attributes_.begin(), attributes_.end(), same), attributes_.end());
}

std::string TagReader::decode(std::string_view markup) {
    const char* const end = markup.data() + markup.size();
    if (find(markup.data(), end, '&') == end)
        return std::string(markup);
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
        const char* next = find(line, end, '\n');
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
