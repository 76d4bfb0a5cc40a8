// What the user created lately.
#pragma once

#include "data/sdk/tag.h"

#include <cstdint>
#include <deque>
#include <string>

namespace MVR {

class CoreServices;

/// Elements for InstanceManager::create(), as many as Setting::kRecentItems allows.
class RecentList {
public:
    explicit RecentList(CoreServices& services) : services_(services) {}

    [[nodiscard]] std::int32_t size() const { return static_cast<std::int32_t>(entries_.size()); }
    /// Returns a copy, or an empty tag if `index` is out of range; 0 is the oldest.
    [[nodiscard]] Tag getEntry(std::int32_t index) const;
    /// Returns the names of the entry's tools, or "" if `index` is out of range.
    [[nodiscard]] std::string getLabel(std::int32_t index) const;
    /// Replaces the list by a tag that store() returned; if it is too long, only the newest stay.
    /// Any other tag leaves the list empty.
    void restore(const Tag& tag);
    /// Returns a tag "Recent" with a copy of each entry, oldest first.
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
