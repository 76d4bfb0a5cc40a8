#include "data/sdk/tag.h"

#include "data/tag_blocks.h"
#include "data/tag_reader.h"
#include "platform/byte_scan.h"

#include <algorithm>
#include <cassert>
#include <memory>
#include <new>
#include <utility>
#include <vector>

namespace MVR {

Tag::Tag(const std::string& xmlText) {
    static_cast<void>(parse(xmlText));
}

Tag::Tag(const Tag& other) {
    std::vector<std::pair<const Tag*, Tag*>> pending;
    copyOwn(other);
    if (other.childCount_ > 0)
        pending.emplace_back(&other, this);
    while (!pending.empty()) {
        const auto [from, to] = pending.back();
        pending.pop_back();
        ChildBlock* block = from->lastBlock_;
        do {
            block = block->next;
            for (const Tag& child : *block) {
                Tag& copy = to->append(Tag());
                copy.copyOwn(child);
                if (child.childCount_ > 0)
                    pending.emplace_back(&child, &copy);
            }
        } while (block != from->lastBlock_);
    }
}

Tag& Tag::operator=(const Tag& other) {
    if (this != &other)
        *this = Tag(other);
    return *this;
}

Tag& Tag::operator=(Tag&& other) noexcept {
    assert(this != &sharedEmpty());
    if (this == &other)
        return *this;
    // `other` may be a child of this Tag, so it is emptied before anything is freed.
    Tag taken(std::move(other));
    std::swap(text_, taken.text_);
    std::swap(attributes_, taken.attributes_);
    std::swap(lastBlock_, taken.lastBlock_);
    std::swap(childCount_, taken.childCount_);
    std::swap(kind_, taken.kind_);
    return *this;
}

// No recursion and no allocation: the rings of deeper levels are spliced into the list of blocks
// that are still to be freed.
void Tag::destroyBlocks() noexcept {
    TagRelease release;
    destroyAttributes(release);
    if (!lastBlock_)
        return;
    ChildBlock* pending = std::exchange(lastBlock_->next, nullptr);
    lastBlock_ = nullptr;
    while (pending) {
        ChildBlock* block = pending;
        pending = block->next;
        // A tree of some size is in no cache: prefetch all that the block leads to at once.
        for (const Tag& child : *block) {
            Platform::prefetch(child.lastBlock_);
            Platform::prefetch(child.attributes_);
        }
        for (Tag& child : *block) {
            if (child.lastBlock_)
                pending = std::exchange(child.lastBlock_->next, pending);
            child.lastBlock_ = nullptr;
            child.destroyAttributes(release);
            child.~Tag();
        }
        release.add(block);
    }
}

void Tag::destroyAttributes(TagRelease& release) noexcept {
    if (!attributes_)
        return;
    std::destroy(attributes_->begin(), attributes_->end());
    release.add(std::exchange(attributes_, nullptr));
}

Tag Tag::element(std::string_view name) {
    Tag result;
    result.kind_ = Element;
    result.text_ = name;
    return result;
}

Tag Tag::element(std::string_view name, std::string_view value) {
    Tag result = element(name);
    result.addChild(textNode(value));
    return result;
}

Tag Tag::element(std::string_view name, const std::array<double, 3>& value) {
    Tag result = element(name);
    result.addChild(textNode(value));
    return result;
}

Tag Tag::textNode(std::string_view value) {
    Tag result;
    result.kind_ = Text;
    result.text_ = value;
    return result;
}

Tag Tag::textNode(const std::array<double, 3>& value) {
    return textNode(numberText(value[0]) + ',' + numberText(value[1]) + ',' + numberText(value[2]));
}

const std::string& Tag::value() const {
    for (std::int32_t i = 0; i < childCount(); ++i)
        if (const Tag& candidate = *childAt(i); candidate.kind_ == Text)
            return candidate.text_;
    return sharedEmpty().text_;
}

std::string Tag::attribute(std::string_view key) const {
    if (attributes_)
        for (const Attribute& attribute : *attributes_)
            if (attributes_->key(attribute) == key)
                return attribute.value;
    return std::string();
}

std::string& Tag::attributeRef(std::string_view key) {
    assert(this != &sharedEmpty());
    AttributeBlock* const old = attributes_;
    Attribute* const begin = old ? old->begin() : nullptr;
    Attribute* const end = old ? old->end() : nullptr;
    Attribute* const place =
        std::lower_bound(begin, end, key, [old](const Attribute& a, std::string_view wanted) {
            return old->key(a) < wanted;
        });
    if (place != end && old->key(*place) == key)
        return place->value;
    const std::string ownKey(key); // `key` may lie in a value that moves.
    AttributeBlock* const larger =
        AttributeBlock::create(old ? old->count + 1 : 1, (old ? old->keyBytes : 0) + key.size());
    const auto move = [&](Attribute& a) {
        larger->add(old->key(a), {}).value = std::move(a.value);
    };
    std::for_each(begin, place, move);
    std::string& added = larger->add(ownKey, {}).value;
    std::for_each(place, end, move);
    TagRelease release;
    destroyAttributes(release);
    attributes_ = larger;
    return added;
}

std::int32_t Tag::childCount(std::string_view name) const {
    std::int32_t result = 0;
    for (std::int32_t i = 0; i < childCount(); ++i)
        result += childAt(i)->text_ == name;
    return result;
}

const Tag& Tag::child(std::int32_t index) const {
    const Tag* found = childAt(index);
    return found ? *found : sharedEmpty();
}

Tag& Tag::child(std::int32_t index) {
    Tag* found = childAt(index);
    return found ? *found : sharedEmpty();
}

const Tag& Tag::child(std::string_view name, std::int32_t n) const {
    const Tag* found = findChild(name, n);
    return found ? *found : sharedEmpty();
}

Tag& Tag::child(std::string_view name, std::int32_t n) {
    Tag* found = findChild(name, n);
    return found ? *found : sharedEmpty();
}

Tag* Tag::childAt(std::int32_t index) const {
    if (index < 0 || index >= childCount())
        return nullptr;
    auto left = static_cast<std::uint32_t>(index);
    ChildBlock* block = lastBlock_->next;
    for (; left >= block->count; block = block->next)
        left -= block->count;
    return block->begin() + left;
}

Tag* Tag::findChild(std::string_view name, std::int32_t n) const {
    if (childCount_ == 0 || n < 0)
        return nullptr;
    ChildBlock* block = lastBlock_;
    do {
        block = block->next;
        for (Tag& candidate : *block)
            if (candidate.text_ == name && n-- == 0)
                return &candidate;
    } while (block != lastBlock_);
    return nullptr;
}

std::string& Tag::setName(std::string_view name) {
    assert(this != &sharedEmpty());
    return text_ = name;
}

Tag& Tag::addChild(const Tag& child) {
    return child.isEmpty() ? *this : addChild(Tag(child));
}

Tag& Tag::addChild(Tag&& child) {
    assert(this != &sharedEmpty());
    if (child.isEmpty())
        return *this;
    Tag taken(std::move(child)); // `child` may be this Tag or one below it.
    return append(std::move(taken));
}

bool Tag::removeChild(const Tag& child) {
    std::int32_t index = 0;
    while (index < childCount() && !childAt(index)->sameOwn(child))
        ++index;
    if (index == childCount())
        return false;
    for (; index + 1 < childCount(); ++index)
        *childAt(index) = std::move(*childAt(index + 1));
    removeLast();
    return true;
}

void Tag::removeLast() {
    (lastBlock_->end() - 1)->~Tag();
    --childCount_;
    if (--lastBlock_->count > 0)
        return;
    ChildBlock* emptied = lastBlock_;
    while (lastBlock_->next != emptied)
        lastBlock_ = lastBlock_->next;
    lastBlock_->next = emptied->next;
    if (lastBlock_ == emptied)
        lastBlock_ = nullptr;
    TagRelease().add(emptied);
}

void Tag::clear() {
    const Kind kept = kind_;
    *this = Tag();
    kind_ = kept;
}

// Copies everything except the children, for which it reserves memory.
void Tag::copyOwn(const Tag& other) {
    text_ = other.text_;
    kind_ = other.kind_;
    if (other.childCount_ > 0)
        lastBlock_ = ChildBlock::create(other.childCount_, nullptr);
    if (!other.attributes_)
        return;
    attributes_ = AttributeBlock::create(other.attributes_->count, other.attributes_->keyBytes);
    for (const Attribute& attribute : *other.attributes_)
        attributes_->add(other.attributes_->key(attribute), attribute.value);
}

bool Tag::sameOwn(const Tag& other) const {
    if (kind_ != other.kind_ || text_ != other.text_)
        return false;
    const std::uint32_t count = attributes_ ? attributes_->count : 0;
    if (count != (other.attributes_ ? other.attributes_->count : 0))
        return false;
    return count == 0 ||
           std::equal(attributes_->begin(), attributes_->end(), other.attributes_->begin(),
                      [&](const Attribute& a, const Attribute& b) {
                          return attributes_->key(a) == other.attributes_->key(b) &&
                                 a.value == b.value;
                      });
}

bool Tag::operator==(const Tag& other) const {
    if (!sameOwn(other) || childCount_ != other.childCount_)
        return false;
    std::vector<std::pair<const Tag*, const Tag*>> pending{{this, &other}};
    while (!pending.empty()) {
        const auto [left, right] = pending.back();
        pending.pop_back();
        for (std::int32_t i = 0; i < left->childCount(); ++i) {
            const Tag* a = left->childAt(i);
            const Tag* b = right->childAt(i);
            if (!a->sameOwn(*b) || a->childCount_ != b->childCount_)
                return false;
            if (a->childCount_ > 0)
                pending.emplace_back(a, b);
        }
    }
    return true;
}

// Never destroyed: it outlives everything that may still read it while a library unloads.
Tag& Tag::sharedEmpty() {
    alignas(Tag) static unsigned char storage[sizeof(Tag)];
    static Tag* const empty = new (storage) Tag;
    return *empty;
}

std::int32_t Tag::parse(std::string_view xmlText) {
    Place fault;
    return parse(xmlText, fault);
}

std::int32_t Tag::parse(std::string_view xmlText, Place& fault) {
    // The text may be a part of the tree that it replaces.
    Tag root;
    root.kind_ = kind_;
    TagReader reader(xmlText);
    const std::int32_t code = reader.readInto(root);
    if (code != 0)
        fault = reader.faultPlace();
    *this = std::move(root);
    return code;
}

} // namespace MVR
