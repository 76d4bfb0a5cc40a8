#include "data/kept_elements.h"

#include <set>
#include <string>

namespace MVR {

void KeptElements::keep(std::int32_t place, const Tag& element) {
    const auto behind = std::upper_bound(
        elements_.begin(), elements_.end(), place,
        [](std::int32_t wanted, const Element& each) { return wanted < each.place; });
    elements_.insert(behind, {place, element});
}

void KeptElements::writeTo(Tag& parent) const {
    for (const Element& each : elements_)
        parent.addChild(each.tag);
}

void KeptElements::writeMissingTo(Tag& parent) const {
    if (elements_.empty())
        return;
    std::set<std::string> present;
    for (std::int32_t i = 0; i < parent.childCount(); ++i)
        present.insert(parent.child(i).name());
    for (const Element& each : elements_)
        if (present.count(each.tag.name()) == 0)
            parent.addChild(each.tag);
}

} // namespace MVR
