#pragma once

#include "data/sdk/tag.h"

#include <algorithm>
#include <cstdint>
#include <utility>
#include <vector>

namespace MVR {

/// Elements of one parent in a file that nothing here can apply now. They are kept as they were
/// read, to be written again behind the parent's other elements, in the order read.
class KeptElements {
public:
    [[nodiscard]] bool isEmpty() const { return elements_.empty(); }
    void clear() { elements_.clear(); }
    /// `place` is the index of the element in its parent.
    void keep(std::int32_t place, const Tag& element);
    /// Keeps those elements of `parent` for which `isKnown(element)` is false, behind what is kept.
    template <class IsKnown>
    void keepUnknown(const Tag& parent, IsKnown isKnown) {
        const std::int32_t end = elements_.empty() ? 0 : elements_.back().place + 1;
        for (std::int32_t i = 0; i < parent.childCount(); ++i)
            if (const Tag& child = parent.child(i); child.kind() == Tag::Element && !isKnown(child))
                keep(end + i, child);
    }

    /// Returns the first element for which `isWanted(element)` is true, and keeps it no longer.
    /// Empty if there is none.
    template <class IsWanted>
    [[nodiscard]] Tag release(IsWanted isWanted) {
        const auto found =
            std::find_if(elements_.begin(), elements_.end(),
                         [&isWanted](const Element& each) { return isWanted(each.tag); });
        if (found == elements_.end())
            return {};
        Tag element = std::move(found->tag);
        elements_.erase(found);
        return element;
    }

    /// Keeps what `filter(element)` makes of each element that `other` keeps; nothing of those for
    /// which that is empty.
    template <class Filter>
    void add(const KeptElements& other, Filter filter) {
        for (const Element& each : other.elements_)
            if (const Tag filtered = filter(each.tag); !filtered.isEmpty())
                keep(each.place, filtered);
    }
    void add(const KeptElements& other) {
        add(
            other, [](const Tag& element) { return element; });
    }

    /// Appends all that is kept.
    void writeTo(Tag& parent) const;
    /// Appends what is kept, but for elements whose name another element of `parent` has.
    void writeMissingTo(Tag& parent) const;

private:
    struct Element {
        std::int32_t place;
        Tag tag;
    };
    std::vector<Element> elements_; // by place
};

} // namespace MVR
