#include "plugins/tree_control.h"

#include "core/contract/adaptor_interface.h"
#include "core/services/core_services.h"
#include "core/services/tool_list_changes.h"
#include "data/writable_name.h"
#include "instance/plugin_instance.h"
#include "plugins/instance_manager.h"

namespace MVR {

void TreeControl::select(InstanceReference* reference) {
    selected_.set(reference);
    if (reference != nullptr && reference->getInstance() != nullptr)
        (void)reference->getInstance()->selectObject();
}

void TreeControl::deleteSelected() {
    if (InstanceReference* const selected = getSelected();
        selected != nullptr && selected->getParentReference() != nullptr)
        selected->remove(true);
}

bool TreeControl::beginDrag(InstanceReference* reference) {
    if (reference == nullptr || reference == services_.getTree().getRoot())
        return false;
    dragged_.set(reference);
    isDragging_ = true;
    return true;
}

bool TreeControl::isDragging() const {
    const InstanceReference* const dragged = dragged_.get();
    return isDragging_ && dragged != nullptr && dragged->isInTree();
}

void TreeControl::endDrag(InstanceReference* target, bool isCtrlHeld) {
    InstanceReference* const dragged = dragged_.get();
    const bool wasDragging = isDragging();
    isDragging_ = false;
    dragged_.set(nullptr);
    if (wasDragging && target != nullptr && !isCtrlHeld)
        services_.getTree().relocate(dragged, target);
}

std::string TreeControl::beginLabelEdit(InstanceReference& reference) {
    services_.getAdaptor()->beginKeyboardCapture();
    return reference.getInstance() != nullptr ? reference.getInstance()->getName() : std::string();
}

void TreeControl::endLabelEdit(InstanceReference* reference, const std::string* text) {
    if (reference != nullptr && text != nullptr && !isBlank(reference->nameInLabel(*text))) {
        const ToolListChanges::Scope change(services_.getToolListChanges());
        // Otherwise its own name would make the wanted one seem in use.
        reference->setLabel("Temporary name");
        reference->setLabel(*text);
    }
    services_.getAdaptor()->endKeyboardCapture();
}

} // namespace MVR
