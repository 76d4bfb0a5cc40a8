// The nodes of a tree that the user sees.
#pragma once

#include "core/messages/sdk/message_node.h"
#include "core/util/composite.h"
#include "core/util/sdk/dynamic_object.h"

#include <cstdint>
#include <string>
#include <vector>

namespace MVR::GUI {

/// A node of a tree: its label, and how it is shown. A parent owns its children. A tree of nodes
/// can be built and changed with no dialog open. Host thread only. No operation recurses, so a tree
/// may be as deep as memory allows.
class TreeNode : public Util::DynamicObject,
                 public Util::Composite_Dynamic<TreeNode>,
                 public Util::MessageNode {
public:
    TreeNode() : MessageNode("TreeNode") {}

    /// The text of the item.
    virtual std::string getLabel() { return label_; }
    virtual void setLabel(std::string text) { label_ = std::move(text); }

    /// Whether the children are unfolded.
    [[nodiscard]] bool isExpanded() const { return expanded_; }
    void setExpanded(bool expanded) { expanded_ = expanded; }
    /// Whether the node appears at all.
    [[nodiscard]] bool isShown() const { return shown_; }
    void setShown(bool shown) { shown_ = shown; }
    /// The check mark.
    [[nodiscard]] bool isChecked() const { return checked_; }
    /// With `recursive` sets it on all descendants too.
    void setChecked(bool checked, bool recursive);

    /// Returns the node above, or null for a root.
    [[nodiscard]] TreeNode* getParentNode() const { return static_cast<TreeNode*>(getParent()); }
    /// Returns the index among the parent's children, 0 for a root. Fastest near the end.
    [[nodiscard]] std::int32_t getPosition() const;

    void destroyComposite() override { destroy(); }

    /// Calls `visit(node)` on `top` and all its descendants, a node before its children and
    /// children in order, but not on `skipped` and its descendants. Stops and returns true as soon
    /// as `visit` does. `visit` must not change the tree.
    template <class Visit>
    static bool walk(TreeNode& top, Visit visit, const TreeNode* skipped = nullptr);

private:
    bool expanded_ = true;
    bool checked_ = true;
    bool shown_ = true;
    std::string label_;
};

template <class Visit>
bool TreeNode::walk(TreeNode& top, Visit visit, const TreeNode* skipped) {
    std::vector<TreeNode*> waiting{&top};
    while (!waiting.empty()) {
        TreeNode* const node = waiting.back();
        waiting.pop_back();
        if (node == skipped)
            continue;
        if (visit(*node))
            return true;
        const auto& children = node->getChildren();
        waiting.insert(waiting.end(), children.rbegin(), children.rend());
    }
    return false;
}

} // namespace MVR::GUI
