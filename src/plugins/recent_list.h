/// \file
/// What the user created lately.
#pragma once

#include "data/sdk/tag.h"

#include <cstdint>
#include <deque>
#include <string>

namespace MVR {

class CoreServices;

/// Elements as InstanceManager::create() takes them, as many as Setting::kRecentItems allows.
class RecentList {
public:
    explicit RecentList(CoreServices& services) : services_(services) {}

    [[nodiscard]] std::int32_t size() const { return static_cast<std::int32_t>(entries_.size()); }
    /// A copy; index 0 is the oldest. Out of range: an empty tag.
    [[nodiscard]] Tag getEntry(std::int32_t index) const;
    /// The names of the entry's tools; "" out of range.
    [[nodiscard]] std::string getLabel(std::int32_t index) const;
    /// Takes over a tag that store() gave; the newest stay if it is too long. Any other tag leaves
    /// the list empty.
    void restore(const Tag& tag);
    /// A tag "Recent" with a copy of each entry, oldest first.
    [[nodiscard]] Tag store() const;
    /// Makes `data` the newest entry, and removes an equal one.
    void add(const Tag& data);
    /// Removes the oldest entries that are too many.
    void trim();

private:
    CoreServices& services_;
    std::deque<Tag> entries_; // oldest first
};

} // namespace MVR
