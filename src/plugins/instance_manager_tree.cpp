#include "plugins/instance_manager.h"

#include "core/contract/adaptor_interface.h"
#include "core/services/core_services.h"
#include "core/services/tool_list_changes.h"
#include "instance/plugin_instance.h"

namespace MVR {

void InstanceManager::select(InstanceReference* reference) {
    selected_.set(reference);
    if (reference != nullptr && reference->getInstance() != nullptr)
        (void)reference->getInstance()->selectObject();
}

bool InstanceManager::beginDrag(InstanceReference* reference) {
    if (reference == nullptr || reference == getRoot())
        return false;
    dragged_.set(reference);
    isDragging_ = true;
    return true;
}

void InstanceManager::endDrag(InstanceReference* target, bool isCtrlHeld) {
    InstanceReference* const dragged = dragged_.get();
    const bool wasDragging = isDragging_;
    isDragging_ = false;
    dragged_.set(nullptr);
    if (wasDragging && dragged != nullptr && target != nullptr && !isCtrlHeld)
        relocate(dragged, target);
}

void InstanceManager::deleteSelected() {
    if (InstanceReference* const selected = getSelected();
        selected != nullptr && selected->getParentReference() != nullptr)
        selected->remove(true);
}

std::string InstanceManager::beginLabelEdit(InstanceReference& reference) {
    getServices().getAdaptor()->beginKeyboardCapture();
    return reference.getInstance() != nullptr ? reference.getInstance()->getName() : std::string();
}

void InstanceManager::endLabelEdit(InstanceReference* reference, const std::string* text) {
    if (reference != nullptr && text != nullptr) {
        const ToolListChanges::Scope change(getServices().getToolListChanges());
        // Else the name that it has would make the wanted one look taken.
        reference->setLabel("Temporary name");
        reference->setLabel(*text);
    }
    getServices().getAdaptor()->endKeyboardCapture();
}

} // namespace MVR
