#pragma once

#include <array>
#include <cstdint>
#include <iosfwd>
#include <string>
#include <string_view>
#include <type_traits>
#include <utility>

namespace MVR {

class TagPool;
class TagReader;
class TagRelease;
class TagWriter;

/// One node of the tree that every structured text goes through: settings, layouts, models,
/// profiles.
///
/// A Tag owns its children and frees them with itself. A copy is deep. A move carries the children
/// along, so that references to them stay valid. All operations are safe for a tree of any depth.
/// A tree belongs to one thread at a time; all operations may be called at any time.
///
/// Reading never fails loudly: what is missing reads as a shared empty Tag, so
/// `tag.child("a").child("b").value()` needs no test. Nothing may be written into that shared Tag:
/// test `isEmpty()` before you change what `child` returned.
class Tag {
public:
    enum Kind : std::uint32_t {
        None = 0,    ///< Nothing was read or made.
        Element = 1, ///< `name()` is the element's name.
        Text = 2,    ///< `name()` is the character data.
        Comment = 4  ///< `name()` is the comment's body, references decoded.
    };

    Tag() noexcept = default;
    /// Parses `xmlText`. The code is dropped: a failed parse leaves what was built up to the fault.
    explicit Tag(const std::string& xmlText);
    Tag(const Tag& other);
    Tag(Tag&& other) noexcept
        : text_(std::move(other.text_)), attributes_(std::exchange(other.attributes_, nullptr)),
          lastBlock_(std::exchange(other.lastBlock_, nullptr)),
          childCount_(std::exchange(other.childCount_, 0u)),
          kind_(std::exchange(other.kind_, None)) {
        other.text_.clear();
    }
    Tag& operator=(const Tag& other);
    Tag& operator=(Tag&& other) noexcept;
    ~Tag() {
        if (lastBlock_ || attributes_)
            destroyBlocks();
    }

    /// An element without children.
    static Tag element(std::string_view name);
    /// An element with one text child, or without a child if `value` is empty.
    static Tag element(std::string_view name, std::string_view value);
    /// As above, with the components joined by ",".
    static Tag element(std::string_view name, const std::array<double, 3>& value);
    /// As above, a number with at most six significant digits, whatever the locale.
    template <typename T, std::enable_if_t<std::is_arithmetic_v<T>, int> = 0>
    static Tag element(std::string_view name, T value) {
        return element(name, std::string_view(numberText(value)));
    }
    /// As above, the shortest text that reads as the same bits.
    static Tag exactElement(std::string_view name, double value);
    static Tag textNode(std::string_view value);
    static Tag textNode(const std::array<double, 3>& value);
    template <typename T, std::enable_if_t<std::is_arithmetic_v<T>, int> = 0>
    static Tag textNode(T value) {
        return textNode(std::string_view(numberText(value)));
    }

    /// The element's name, or the text of a text node or a comment.
    const std::string& name() const { return text_; }
    bool hasName(std::string_view name) const { return text_ == name; }
    Kind kind() const { return kind_; }
    /// Returns true if there is no text and no child; attributes don't count. True for the shared
    /// empty Tag.
    bool isEmpty() const { return childCount_ == 0 && text_.empty(); }
    /// Returns the text of the first text child, or an empty string. Valid until that child
    /// changes.
    const std::string& value() const;
    /// Reads this Tag's own text as a number. Returns false, with `out` unchanged, if it holds
    /// none. For the number of an element ask its first child: `child(0).as(out)`. `T` is any
    /// built-in number type except the character types.
    template <typename T>
    bool as(T& out) const;

    /// Returns the value, or "" if there is none; never adds the key.
    std::string attribute(std::string_view key) const;
    /// Returns a writable reference to the value, which is added as "" if there is none. Valid
    /// until the next key is added.
    std::string& attributeRef(std::string_view key);

    std::int32_t childCount() const { return static_cast<std::int32_t>(childCount_); }
    /// Returns the number of children of any kind with that text.
    std::int32_t childCount(std::string_view name) const;
    /// Returns the child at `index`, from 0, or the shared empty Tag if there is none. The
    /// reference stays valid while siblings are added, until one is removed.
    const Tag& child(std::int32_t index) const;
    Tag& child(std::int32_t index);
    /// Returns the `n`-th child, from 0, of any kind with that text, or the shared empty Tag if
    /// there is none.
    const Tag& child(std::string_view name, std::int32_t n = 0) const;
    Tag& child(std::string_view name, std::int32_t n = 0);

    /// Sets the text and returns a writable reference to it.
    std::string& setName(std::string_view name);
    /// Appends a copy and returns a reference to it. A child without text and children is not
    /// added; this Tag is returned instead. A Tag that is moved in may be this one or one below it,
    /// but none above it.
    Tag& addChild(const Tag& child);
    Tag& addChild(Tag&& child);
    /// Removes the first child of the same kind, text and attributes, whatever its children.
    /// Returns false if there is none.
    bool removeChild(const Tag& child);
    /// Frees the children, the attributes and the text. The kind stays.
    void clear();

    /// Clears the Tag and reads the text into it. Anything after the root element is ignored.
    /// Returns 0 for success; 2 if there is no root, or a close tag where a node was expected; 3 if
    /// the text ended inside an element; 4 for a close tag of another element; 5 for a fault in an
    /// attribute, or nothing where a node was expected; 6 for more levels than `kMaxDepth`, which
    /// is logged. On failure the Tag keeps all that was complete before the fault, including the
    /// root's own attributes.
    [[nodiscard]] std::int32_t parse(std::string_view xmlText);
    /// A position in a text: the line, from 1, and the byte in that line, from 1.
    struct Place {
        std::int32_t line = 0;
        std::int32_t column = 0;
    };
    /// The same, and stores where the fault is; for an element that isn't closed, where it opens.
    /// Without a fault `fault` stays unchanged.
    [[nodiscard]] std::int32_t parse(std::string_view xmlText, Place& fault);
    /// Describes a code of `parse`, `read` or `load` in a few words for the user.
    static const char* describeFault(std::int32_t code);
    /// Reads the stream to its end, line ends removed, and parses that.
    [[nodiscard]] std::int32_t read(std::istream& stream);
    /// Returned by `load` for a file that can't be opened or read.
    static constexpr std::int32_t kNotOpened = 1;
    /// Reads a file as `read` does. Returns `kNotOpened`, with nothing changed, if the file can't
    /// be opened or read, or is larger than 2 GiB.
    [[nodiscard]] std::int32_t load(const std::string& path);

    /// Returns the tree as text. `indent` precedes the root, and each level adds one `indentUnit`.
    std::string toText(std::string_view newline, std::string_view indentUnit,
                       std::string_view indent) const;
    /// Writes an XML header and the tree. Returns false, with the old file intact, if that fails or
    /// the tree is deeper than `load` reads.
    [[nodiscard]] bool save(const std::string& path) const;

    bool operator==(const Tag& other) const;
    bool operator!=(const Tag& other) const { return !(*this == other); }

    /// The most levels of elements with content that are read from text; a leaf may be one level
    /// deeper. Bounds the recursion of code that walks a tree.
    static constexpr std::int32_t kMaxDepth = 2000;

private:
    friend class TagReader;
    friend class TagWriter;
    struct Attribute;
    struct AttributeBlock;
    struct ChildBlock;

    Tag(Kind kind, std::string_view text) : text_(text), kind_(kind) {}

    static std::string numberText(double value);
    static std::string numberText(long long value);
    static std::string numberText(unsigned long long value);
    template <typename T>
    static std::string numberText(T value) {
        static_assert(!std::is_same_v<T, char> && !std::is_same_v<T, signed char> &&
                          !std::is_same_v<T, unsigned char>,
                      "a character is no number: say which is meant");
        if constexpr (std::is_floating_point_v<T>)
            return numberText(static_cast<double>(value));
        else if constexpr (std::is_signed_v<T>)
            return numberText(static_cast<long long>(value));
        else
            return numberText(static_cast<unsigned long long>(value));
    }

    static Tag& sharedEmpty();
    Tag* findChild(std::string_view name, std::int32_t n) const;
    Tag* childAt(std::int32_t index) const;
    Tag& append(Tag&& node, TagPool* pool = nullptr);
    void removeLast();
    void copyOwn(const Tag& other);
    bool sameOwn(const Tag& other) const;
    void destroyBlocks() noexcept;
    void destroyAttributes(TagRelease& release) noexcept;

    // Small on purpose: files hold hundreds of thousands of nodes.
    std::string text_;
    AttributeBlock* attributes_ = nullptr; // Owned. Sorted by key.
    ChildBlock* lastBlock_ = nullptr;      // Owned. The last of a ring of blocks.
    std::uint32_t childCount_ = 0;
    Kind kind_ = None;
};

extern template bool Tag::as<bool>(bool&) const;
extern template bool Tag::as<short>(short&) const;
extern template bool Tag::as<unsigned short>(unsigned short&) const;
extern template bool Tag::as<int>(int&) const;
extern template bool Tag::as<unsigned int>(unsigned int&) const;
extern template bool Tag::as<long>(long&) const;
extern template bool Tag::as<unsigned long>(unsigned long&) const;
extern template bool Tag::as<long long>(long long&) const;
extern template bool Tag::as<unsigned long long>(unsigned long long&) const;
extern template bool Tag::as<float>(float&) const;
extern template bool Tag::as<double>(double&) const;

} // namespace MVR
