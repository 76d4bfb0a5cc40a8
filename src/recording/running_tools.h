// The tools of a take, which may be destroyed at any moment.
#pragma once

#include <cstddef>
#include <cstdint>
#include <utility>
#include <vector>

namespace MVR {

class PluginInstance;

/// The tools that run in a take, parents first. Tools may drop out while the list is walked.
class RunningTools {
public:
    /// Not allowed during a walk.
    void assign(std::vector<PluginInstance*> tools) { tools_ = std::move(tools); }

    /// Runs `operation` on each tool that is still there when its turn comes. Walks may nest.
    template <class Operation>
    void forEach(Operation operation) {
        ++walks_;
        for (std::size_t i = 0; i < tools_.size(); ++i)
            if (tools_[i] != nullptr)
                operation(*tools_[i]);
        if (--walks_ == 0)
            removeDropped();
    }

    /// Removes `tool`. Returns false if it isn't there.
    bool drop(const PluginInstance* tool);
    void clear();
    [[nodiscard]] std::vector<PluginInstance*> list() const;

private:
    void removeDropped();

    std::vector<PluginInstance*> tools_; // not owned; null: dropped during a walk
    std::int32_t walks_ = 0;             // how many are under way
};

} // namespace MVR
