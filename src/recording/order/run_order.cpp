#include "recording/order/run_order.h"

#include "core/base/border.h"
#include "core/base/sdk/log.h"
#include "core/contract/adaptor_interface.h"
#include "plugins/contract/scene_node.h"

#include <numeric>
#include <unordered_map>
#include <utility>

namespace MVR {

namespace {

using NameOf = std::function<std::string(std::size_t)>;
using IsThere = std::function<bool(std::size_t)>;

/// Depth first over the tools and the tools that own their nodes' parents. A loop with a stack of
/// its own, since each tool of a long chain waits for the one above it.
class RunOrder {
public:
    RunOrder(AdaptorInterface& host, const std::vector<CInterface*>& tools, const NameOf& nameOf,
             const IsThere& isThere)
        : tools_(tools), nameOf_(nameOf), isThere_(isThere), isVisited_(tools.size(), false) {
        nodes_.reserve(tools.size());
        nodesEnd_.reserve(tools.size());
        indices_.reserve(tools.size());
        for (std::size_t i = 0; i < tools.size(); ++i) {
            const std::vector<SceneNode*> nodes =
                isThere(i) ? host.getNodes(tools[i]) : std::vector<SceneNode*>();
            nodes_.insert(nodes_.end(), nodes.begin(), nodes.end());
            nodesEnd_.push_back(nodes_.size());
            indices_.emplace(tools[i], i);
        }
    }

    std::vector<std::size_t> find() {
        order_.reserve(tools_.size());
        for (const CInterface* tool : tools_)
            if (const std::size_t index = indices_.at(tool); !isVisited_[index])
                visit(index);
        return std::move(order_);
    }

private:
    struct Visit {
        std::size_t index;
        std::size_t nextNode; // in nodes_
        SceneNode* parent;    // a handle, held while its owner is visited
    };

    void begin(std::size_t index) {
        isVisited_[index] = true;
        open_.push_back({index, firstNode(index), nullptr});
    }

    void visit(std::size_t start) {
        begin(start);
        while (!open_.empty()) {
            Visit& current = open_.back();
            if (current.parent != nullptr)
                giveBackParent(current);
            if (current.nextNode < nodesEnd_[current.index] && isThere_(current.index)) {
                // Last it may open another visit, which moves `current`; then nothing throws.
                if (!Border::callNode("getParent", [&] { visitNode(current); }) &&
                    current.parent == nullptr)
                    ++current.nextNode;
                continue;
            }
            if (isLogged_ && isThere_(current.index))
                log_.write("    add: " + nameOf_(current.index));
            order_.push_back(current.index);
            open_.pop_back();
        }
    }

    void giveBackParent(Visit& current) {
        SceneNode* const node = nodes_[current.nextNode++];
        SceneNode* const parent = std::exchange(current.parent, nullptr);
        if (isThere_(current.index))
            (void)Border::callNode("release", [&] { node->release(parent); });
    }

    void visitNode(Visit& current) {
        SceneNode& node = *nodes_[current.nextNode];
        write("  Node: ", node.getName());
        current.parent = node.getParent();
        if (current.parent == nullptr) {
            ++current.nextNode;
            return;
        }
        write("    Parent: ", current.parent->getName());
        const auto owner = indices_.find(current.parent->getOwner());
        if (owner != indices_.end() && !isVisited_[owner->second] && isThere_(owner->second) &&
            owns(owner->second, *current.parent))
            begin(owner->second); // `current` may have moved
    }

    /// Handles of one host object may differ, so the host decides.
    bool owns(std::size_t index, SceneNode& handle) const {
        for (std::size_t i = firstNode(index); i < nodesEnd_[index]; ++i)
            if (handle.isSameNode(nodes_[i]))
                return true;
        return false;
    }

    std::size_t firstNode(std::size_t index) const { return index > 0 ? nodesEnd_[index - 1] : 0; }

    void write(const char* what, const std::string& name) {
        if (isLogged_)
            log_.write(what + name);
    }

    const std::vector<CInterface*>& tools_;
    const NameOf& nameOf_;
    const IsThere& isThere_;
    std::vector<SceneNode*> nodes_;     // of all tools, in one piece of memory
    std::vector<std::size_t> nodesEnd_; // in nodes_, by index in tools_
    std::unordered_map<const CInterface*, std::size_t> indices_; // in tools_
    std::vector<bool> isVisited_; // or being visited: tools may own each other's parents
    std::vector<Visit> open_;
    std::vector<std::size_t> order_;
    Log log_{Log::Notice};
    const bool isLogged_ = Log::getThreshold() >= Log::Notice;
};

void writeNames(std::string text, const std::vector<std::size_t>& order, const NameOf& nameOf,
                const IsThere& isThere) {
    for (const std::size_t index : order)
        if (isThere(index))
            text += nameOf(index) + "\n";
    Log(Log::Notice).write(text);
}

} // namespace

std::vector<std::size_t> findRunOrder(AdaptorInterface& host, const std::vector<CInterface*>& tools,
                                      const NameOf& nameOf, const IsThere& isThere) {
    const bool isLogged = Log::getThreshold() >= Log::Notice;
    if (isLogged) {
        std::vector<std::size_t> given(tools.size());
        std::iota(given.begin(), given.end(), std::size_t{0});
        writeNames("Before sort: ", given, nameOf, isThere);
    }
    std::vector<std::size_t> order = RunOrder(host, tools, nameOf, isThere).find();
    if (isLogged)
        writeNames("After sort: ", order, nameOf, isThere);
    return order;
}

} // namespace MVR
