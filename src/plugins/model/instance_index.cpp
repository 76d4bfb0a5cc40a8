#include "plugins/model/instance_index.h"

#include <algorithm>

namespace MVR {

void InstanceIndex::build() {
    InstanceReference* top = member_.get();
    while (top->getParentReference() != nullptr)
        top = top->getParentReference();
    std::vector<InstanceReference*> all;
    top->collectInstances(all);
    inOrder_.reserve(all.size());
    for (std::size_t place = 0; place < all.size(); ++place) {
        inOrder_.emplace_back(all[place]);
        places_.emplace(all[place], place);
        parents_.push_back(place == 0 ? 0 : places_.at(all[place]->getParentReference()));
        if (all[place]->getInstance() != nullptr)
            byName_[all[place]->getInstanceName()].push_back(place);
    }
    ends_.resize(all.size());
    for (std::size_t place = all.size(); place-- > 0;) {
        ends_[place] = std::max(ends_[place], place + 1);
        ends_[parents_[place]] = std::max(ends_[parents_[place]], ends_[place]);
    }
}

InstanceReference* InstanceIndex::find(const InstanceReference& from, const std::string& name) {
    if (inOrder_.empty() && member_.get() != nullptr)
        build();
    const auto named = byName_.find(name);
    const auto start = places_.find(&from);
    if (named == byName_.end() || start == places_.end())
        return nullptr;
    const std::vector<std::size_t>& candidates = named->second;
    std::size_t at = start->second;
    std::size_t found = candidates.front();
    if (candidates.size() > 1)
        while (true) {
            const auto first = std::lower_bound(candidates.begin(), candidates.end(), at);
            if (first != candidates.end() && *first < ends_[at]) {
                found = *first;
                break;
            }
            at = parents_[at];
        }
    return inOrder_[found].get();
}

} // namespace MVR
