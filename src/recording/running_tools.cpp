#include "recording/running_tools.h"

#include <algorithm>
#include <iterator>

namespace MVR {

bool RunningTools::drop(const PluginInstance* tool) {
    const auto found = std::find(tools_.rbegin(), tools_.rend(), tool);
    if (found == tools_.rend())
        return false;
    *found = nullptr;
    if (walks_ == 0)
        tools_.erase(std::next(found).base());
    return true;
}

void RunningTools::clear() {
    std::fill(tools_.begin(), tools_.end(), nullptr);
    if (walks_ == 0)
        removeDropped();
}

std::vector<PluginInstance*> RunningTools::list() const {
    std::vector<PluginInstance*> present;
    std::copy_if(tools_.begin(), tools_.end(), std::back_inserter(present),
                 [](const PluginInstance* tool) { return tool != nullptr; });
    return present;
}

void RunningTools::removeDropped() {
    tools_.erase(std::remove(tools_.begin(), tools_.end(), nullptr), tools_.end());
}

} // namespace MVR
