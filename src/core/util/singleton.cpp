#include "core/util/sdk/singleton.h"

#include <algorithm>

namespace MVR::Util {

void SingletonCollector::destroyAll() {
    SingletonCollector* const collector = instance();
    std::vector<SingletonReference*>& list = collector->singletons_;
    // A destructor may ask for another service first, which is then the newest.
    while (list.size() > 1) {
        SingletonReference* const newest = list.back();
        newest->destroySingleton();
        collector->remove(newest);
    }
    collector->destroySingleton();
}

void SingletonCollector::remove(const SingletonReference* singleton) {
    while (true) {
        const auto found = std::find(singletons_.rbegin(), singletons_.rend(), singleton);
        if (found == singletons_.rend())
            return;
        singletons_.erase(std::next(found).base());
    }
}

} // namespace MVR::Util
