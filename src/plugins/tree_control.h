// What the user does with the items of the tree's control.
#pragma once

#include "plugins/instance_reference.h"

#include <string>

namespace MVR {

class CoreServices;

/// The control's state: which item is selected, and which is dragged. Items stand for references.
class TreeControl {
public:
    explicit TreeControl(CoreServices& services) : services_(services) {}

    /// Returns the selected item's, or null if there is none.
    [[nodiscard]] InstanceReference* getSelected() const { return selected_.get(); }
    /// Another item was selected, or none: its tool may select its object in the host.
    void select(InstanceReference* reference);
    /// The delete key: deletes the selected tool with its scene objects, but never the root.
    void deleteSelected();

    /// A drag begins at an item. Returns false if it has to end at once, as the root can't be
    /// moved.
    [[nodiscard]] bool beginDrag(InstanceReference* reference);
    /// Returns false once the dragged tool has left the tree: it stays where it is.
    [[nodiscard]] bool isDragging() const;
    /// The mouse button is released, over an item or none: relocates, unless Ctrl is held.
    void endDrag(InstanceReference* target, bool isCtrlHeld);

    /// The label of an item is about to be edited. Returns the text to begin with.
    [[nodiscard]] std::string beginLabelEdit(InstanceReference& reference);
    /// The edit ended; `text` is null if the user cancelled it.
    void endLabelEdit(InstanceReference* reference, const std::string* text);

private:
    CoreServices& services_;
    InstanceReference::Watch selected_{nullptr};
    InstanceReference::Watch dragged_{nullptr};
    bool isDragging_ = false;
};

} // namespace MVR
