// The tools of a tree by name, for passes that look up many of them.
#pragma once

#include "plugins/instance_reference.h"

#include <cstddef>
#include <string>
#include <unordered_map>
#include <vector>

namespace MVR {

/// Finds what InstanceReference::findInstance() with `lookUp` finds, at the cost of one walk over
/// the tree. Built at its first use; the tree must keep its shape from then on, but its tools may
/// be destroyed.
class InstanceIndex {
public:
    /// Indexes the whole tree that `member` is in.
    explicit InstanceIndex(InstanceReference& member) : member_(&member) {}

    /// Returns the tool of that name that is nearest to `from`: at or below it, else at or below
    /// the one above, and so on; the first if there are several. Null if there is none.
    [[nodiscard]] InstanceReference* find(const InstanceReference& from, const std::string& name);

private:
    void build();

    InstanceReference::Watch member_;
    std::vector<InstanceReference::Watch> inOrder_; // each before those below it
    std::unordered_map<const InstanceReference*, std::size_t> places_;
    std::vector<std::size_t> ends_;    // by index: where those below it end
    std::vector<std::size_t> parents_; // by index; the top's is its own
    std::unordered_map<std::string, std::vector<std::size_t>> byName_; // ascending indices
};

} // namespace MVR
