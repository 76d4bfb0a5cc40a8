#include "plugins/instance_manager.h"

#include "core/base/sdk/log.h"
#include "core/contract/adaptor_interface.h"
#include "core/services/core_services.h"
#include "instance/plugin_instance.h"
#include "plugins/contract/scene_node.h"

#include <algorithm>
#include <cstddef>
#include <unordered_map>

namespace MVR {
namespace {

/// Depth first over the tools and the tools that own their nodes' parents. A loop with a stack of
/// its own, since each tool of a long chain waits for the one above it.
class RecordingOrder {
public:
    RecordingOrder(AdaptorInterface& adaptor, const std::vector<PluginInstance*>& instances)
        : instances_(instances), isVisited_(instances.size(), false) {
        nodes_.reserve(instances.size());
        for (std::size_t i = 0; i < instances.size(); ++i) {
            nodes_.push_back(adaptor.getNodes(instances[i]));
            indices_.emplace(instances[i], i);
        }
    }

    std::vector<PluginInstance*> sort() {
        sorted_.reserve(instances_.size());
        for (PluginInstance* instance : instances_)
            if (const std::size_t index = indices_.at(instance); !isVisited_[index])
                visit(index);
        return std::move(sorted_);
    }

private:
    struct Visit {
        std::size_t index;
        std::size_t nextNode;
        SceneNode* parent; // a handle, held while its owner is visited
    };

    void begin(std::size_t index) {
        isVisited_[index] = true;
        open_.push_back({index, 0, nullptr});
    }

    void visit(std::size_t start) {
        begin(start);
        while (!open_.empty()) {
            Visit& current = open_.back();
            const std::vector<SceneNode*>& nodes = nodes_[current.index];
            if (current.parent != nullptr)
                nodes[current.nextNode++]->release(std::exchange(current.parent, nullptr));
            if (current.nextNode < nodes.size()) {
                visitNode(current);
                continue;
            }
            write("    add: ", instances_[current.index]->getName());
            sorted_.push_back(instances_[current.index]);
            open_.pop_back();
        }
    }

    void visitNode(Visit& current) {
        SceneNode& node = *nodes_[current.index][current.nextNode];
        write("  Node: ", node.getName());
        current.parent = node.getParent();
        if (current.parent == nullptr) {
            ++current.nextNode;
            return;
        }
        write("    Parent: ", current.parent->getName());
        const auto owner = indices_.find(current.parent->getOwner());
        if (owner != indices_.end() && !isVisited_[owner->second] &&
            owns(owner->second, *current.parent))
            begin(owner->second); // `current` may have moved
    }

    /// Handles of one host object may differ: the host's word counts.
    bool owns(std::size_t index, SceneNode& handle) const {
        return std::any_of(nodes_[index].begin(), nodes_[index].end(),
                           [&handle](SceneNode* node) { return handle.isSameNode(node); });
    }

    void write(const char* what, const std::string& name) {
        if (isLogged_)
            log_.write(what + name);
    }

    const std::vector<PluginInstance*>& instances_;
    std::vector<std::vector<SceneNode*>> nodes_;                 // by index in instances_
    std::unordered_map<const CInterface*, std::size_t> indices_; // in instances_
    std::vector<bool> isVisited_; // or being visited: tools may own each other's parents
    std::vector<Visit> open_;
    std::vector<PluginInstance*> sorted_;
    Log log_{Log::Notice};
    const bool isLogged_ = Log::getThreshold() >= Log::Notice;
};

void writeNames(std::string text, const std::vector<PluginInstance*>& instances) {
    if (Log::getThreshold() < Log::Notice)
        return;
    for (const PluginInstance* instance : instances)
        text += instance->getName() + "\n";
    Log(Log::Notice).write(text);
}

} // namespace

std::vector<PluginInstance*>
InstanceManager::sortForRecording(const std::vector<PluginInstance*>& instances) {
    writeNames("Before sort: ", instances);
    std::vector<PluginInstance*> sorted =
        RecordingOrder(*getServices().getAdaptor(), instances).sort();
    writeNames("After sort: ", sorted);
    return sorted;
}

} // namespace MVR
