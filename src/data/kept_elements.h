#pragma once

#include "data/sdk/tag.h"

#include <algorithm>
#include <utility>
#include <vector>

namespace MVR {

/// Elements of one parent in a file that nothing here can apply now. They are kept as they were
/// read, to be written again behind the parent's other elements, in the order read.
class KeptElements {
public:
    [[nodiscard]] bool isEmpty() const { return elements_.empty(); }
    void clear() { elements_.clear(); }
    void keep(const Tag& element) { elements_.push_back(element); }
    /// Keeps those elements of `parent` for which `isKnown(element)` is false.
    template <class IsKnown>
    void keepUnknown(const Tag& parent, IsKnown isKnown) {
        for (std::int32_t i = 0; i < parent.childCount(); ++i)
            if (const Tag& child = parent.child(i); child.kind() == Tag::Element && !isKnown(child))
                keep(child);
    }

    /// Returns the first element for which `isWanted(element)` is true, and keeps it no longer.
    /// Empty if there is none.
    template <class IsWanted>
    [[nodiscard]] Tag release(IsWanted isWanted) {
        const auto found = std::find_if(elements_.begin(), elements_.end(), isWanted);
        if (found == elements_.end())
            return {};
        Tag element = std::move(*found);
        elements_.erase(found);
        return element;
    }

    /// Appends all that is kept.
    void writeTo(Tag& parent) const;
    /// Appends what is kept, but for elements whose name another element of `parent` has.
    void writeMissingTo(Tag& parent) const;

private:
    std::vector<Tag> elements_;
};

} // namespace MVR
