#include "data/kept_elements.h"

#include <set>
#include <string>

namespace MVR {

void KeptElements::writeTo(Tag& parent) const {
    for (const Tag& element : elements_)
        parent.addChild(element);
}

void KeptElements::writeMissingTo(Tag& parent) const {
    if (elements_.empty())
        return;
    std::set<std::string> present;
    for (std::int32_t i = 0; i < parent.childCount(); ++i)
        present.insert(parent.child(i).name());
    for (const Tag& element : elements_)
        if (present.count(element.name()) == 0)
            parent.addChild(element);
}

} // namespace MVR
