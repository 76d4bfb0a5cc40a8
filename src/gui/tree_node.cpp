#include "gui/tree_node.h"

#include <algorithm>
#include <iterator>

namespace MVR::GUI {

void TreeNode::setChecked(bool checked, bool recursive) {
    if (!recursive) {
        checked_ = checked;
        return;
    }
    walk(*this, [checked](TreeNode& node) {
        node.checked_ = checked;
        return false;
    });
}

std::int32_t TreeNode::getPosition() const {
    if (getParent() == nullptr)
        return 0;
    const auto& siblings = getParent()->getChildren();
    const auto found = std::find(siblings.rbegin(), siblings.rend(), this);
    return static_cast<std::int32_t>(std::distance(found, siblings.rend())) - 1;
}

} // namespace MVR::GUI
