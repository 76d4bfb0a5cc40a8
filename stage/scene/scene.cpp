#include "stage/scene/scene.h"

#include "stage/base/text.h"
#include "stage/scene/undo_list.h"

#include <algorithm>
#include <cstdio>
#include <utility>

namespace Stage {

std::intptr_t Scene::MeshHandler::query(MVR::SceneNode* node) {
    (void)node;
    return 0;
}

std::intptr_t Scene::MeshHandler::endMeshSnapshot(MVR::SceneNode* node) {
    return node != nullptr ? 1 : 0;
}

std::intptr_t Scene::MeshHandler::endHelperSnapshot(MVR::SceneNode* node) {
    return node != nullptr ? 1 : 0;
}

std::intptr_t Scene::TransformHandler::endSnapshot(MVR::SceneNode* node) {
    static_cast<StageNode*>(node)->closeSnapshot();
    return 1;
}

StageNode* Scene::create(std::string name, MVR::CInterface* owner, std::intptr_t kind,
                         StageNode* parent) {
    std::string hostName = uniqueName(name, nullptr);
    const auto node = std::make_shared<StageNode>(*this, std::move(name), owner, kind);
    node->hostName_ = std::move(hostName);
    bring(node, parent);
    return node.get();
}

StageNode& Scene::restore(NodeRecord record) {
    record.sceneName = uniqueName(std::move(record.sceneName), nullptr);
    const auto node = std::make_shared<StageNode>(*this, std::move(record));
    bring(node, nullptr);
    return *node;
}

void Scene::bring(const std::shared_ptr<StageNode>& node, StageNode* parent) {
    const std::size_t place = nodes_.size();
    insert(node, place);
    node->hangBelow(parent, parent != nullptr ? parent->children_.size() : 0);
    if (!undo_.isOpen())
        return;
    // Its parent may change outside a step: a redo restores what the undo found.
    struct Links {
        StageNode* parent;
        std::size_t index;
        std::vector<StageNode*> children;
    };
    const auto links = std::make_shared<Links>();
    undo_.add(
        [this, node, links] {
            *links = {node->parent_, node->getIndex(), node->children_};
            take(*node);
        },
        [this, node, links, place] {
            insert(node, place);
            if (contains(links->parent))
                node->hangBelow(links->parent, links->index);
            for (StageNode* child : links->children)
                if (contains(child) && child->parent_ == nullptr)
                    child->hangBelow(node.get(), node->children_.size());
        });
}

void Scene::remove(StageNode& node) {
    if (!contains(&node))
        return;
    undo_.begin("Delete " + node.getSceneName());
    std::vector<StageNode*> others = selection_;
    std::erase(others, &node);
    setSelection(std::move(others));
    while (!node.children_.empty())
        hang(*node.children_.back(), node.parent_);
    hang(node, nullptr);
    const auto self = node.shared_from_this();
    const auto place =
        static_cast<std::size_t>(std::find(nodes_.begin(), nodes_.end(), self) - nodes_.begin());
    undo_.add([this, self, place] { insert(self, place); }, [this, self] { take(*self); });
    take(node);
    undo_.end();
}

void Scene::hang(StageNode& node, StageNode* parent) {
    StageNode* const oldParent = node.parent_;
    const std::size_t oldIndex = node.getIndex();
    const std::size_t newIndex = parent != nullptr ? parent->children_.size() : 0;
    node.hangBelow(parent, newIndex);
    if (undo_.isOpen()) {
        // The parents are in the scene again whenever these run, as entries run in order.
        const auto self = node.shared_from_this();
        undo_.add([self, oldParent, oldIndex] { self->hangBelow(oldParent, oldIndex); },
                  [self, parent, newIndex] { self->hangBelow(parent, newIndex); });
    }
}

StageNode* Scene::find(const std::string& name, const MVR::CInterface* owner) const {
    for (const auto& node : nodes_)
        if (node->getOwner() == owner && node->getName() == name)
            return node.get();
    return nullptr;
}

StageNode* Scene::findByHostName(const std::string& name) const {
    const auto found = byName_.find(name);
    return found != byName_.end() ? found->second : nullptr;
}

bool Scene::contains(const MVR::SceneNode* node) const {
    return std::any_of(
        nodes_.begin(), nodes_.end(), [node](const auto& known) { return known.get() == node; });
}

std::string Scene::uniqueName(std::string name, const StageNode* self) const {
    const auto isFree = [&](const std::string& wanted) {
        const StageNode* other = findByHostName(wanted);
        return other == nullptr || other == self;
    };
    const auto numbered = [&name](int number) {
        char suffix[16];
        std::snprintf(suffix, sizeof suffix, "_%02d", number);
        return name + suffix;
    };
    if (trimmed(name).empty())
        name = "Object"; // a file couldn't hold blanks alone, and a user couldn't see them
    if (isFree(name))
        return name;
    // Finds a free number after a used one by halving: in a file thousands of nodes may have the
    // same name.
    int taken = 1;
    int free = 2;
    while (!isFree(numbered(free))) {
        taken = free;
        free *= 2;
    }
    while (free - taken > 1) {
        const int middle = taken + (free - taken) / 2;
        (isFree(numbered(middle)) ? free : taken) = middle;
    }
    return numbered(free);
}

void Scene::notifyKey(const StageNode& node, double time) const {
    if (keyListener_)
        keyListener_(node, time);
}

void Scene::select(StageNode& node) {
    if (std::find(selection_.begin(), selection_.end(), &node) == selection_.end()) {
        std::vector<StageNode*> nodes = selection_;
        nodes.push_back(&node);
        setSelection(std::move(nodes));
    }
}

void Scene::setSelection(std::vector<StageNode*> nodes) {
    if (nodes == selection_)
        return;
    if (undo_.isOpen()) {
        // A node that is selected in either state is in the scene whenever that state is.
        undo_.add([this, old = selection_] { selection_ = old; },
                  [this, nodes] { selection_ = nodes; });
    }
    selection_ = std::move(nodes);
}

bool Scene::forgetName(const StageNode& node) {
    const auto [begin, end] = byName_.equal_range(node.getSceneName());
    const auto found =
        std::find_if(begin, end, [&node](const auto& entry) { return entry.second == &node; });
    if (found == end)
        return false;
    byName_.erase(found);
    return true;
}

void Scene::insert(std::shared_ptr<StageNode> node, std::size_t index) {
    noteName(*node);
    nodes_.insert(nodes_.begin() + static_cast<std::ptrdiff_t>(std::min(index, nodes_.size())),
                  std::move(node));
}

void Scene::take(const StageNode& node) {
    auto found = std::find_if(nodes_.begin(), nodes_.end(),
                              [&node](const auto& known) { return known.get() == &node; });
    if (found == nodes_.end())
        return;
    forgetName(node);
    std::erase(selection_, &node);
    while (!(*found)->children_.empty())
        (*found)->children_.back()->hangBelow(nullptr, 0);
    (*found)->hangBelow(nullptr, 0);
    const auto keep = std::move(*found); // freed last, if nothing else holds it
    nodes_.erase(found);
}

} // namespace Stage
