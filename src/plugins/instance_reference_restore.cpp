#include "plugins/instance_reference_restore.h"

#include "core/base/sdk/log.h"
#include "core/services/core_services.h"

namespace MVR {
namespace {

/// Ends a restore object: destroys the reference if the object owns it.
void endRestore(const char* text, InstanceReference* ownedReference) {
    Log entry(text, Log::Notice);
    if (ownedReference == nullptr)
        return;
    entry.write("Deleting reference", ownedReference->getLabel(), Log::OwnLevel);
    ownedReference->destroy();
}

} // namespace

InstanceReferencePlace::InstanceReferencePlace(InstanceReference* reference)
    : reference_(reference), parent_(reference->getParentReference()),
      index_(reference->getPosition()), part_(reference->getServices()->getToolListChanges()) {}

void InstanceReferencePlace::swap(bool keepsPresent) {
    InstanceReference* const reference = reference_.get();
    InstanceReference* const presentParent = reference->getParentReference();
    const std::int32_t presentIndex = reference->getPosition();
    if (presentParent != nullptr)
        presentParent->GUI::TreeNode::remove(reference);
    if (InstanceReference* const parent = parent_.get())
        parent->insert(reference, index_);
    if (keepsPresent) {
        parent_.set(presentParent);
        index_ = presentIndex;
    }
}

void InstanceReferenceMoveRestore::restore(bool isUndo) {
    const InstanceReferencePlace::Turn turn(place_);
    if (place_.getReference() != nullptr)
        place_.swap(isUndo);
}

InstanceReferenceCreateRestore::InstanceReferenceCreateRestore(InstanceReference* reference)
    : place_(reference) {
    Log entry("Creating InstanceReferenceDeleteRestore", Log::Notice);
}

InstanceReferenceCreateRestore::~InstanceReferenceCreateRestore() {
    endRestore("Destroying InstanceReferenceCreateRestore",
               inPlace_ == 0 ? place_.getReference() : nullptr);
}

void InstanceReferenceCreateRestore::restore(bool isUndo) {
    const InstanceReferencePlace::Turn turn(place_);
    InstanceReference* const reference = place_.getReference();
    if (reference == nullptr)
        return;
    place_.swap(isUndo);
    reference->setInTree(false);
    inPlace_ = 0;
}

void InstanceReferenceCreateRestore::redo() {
    const InstanceReferencePlace::Turn turn(place_);
    InstanceReference* const reference = place_.getReference();
    if (reference == nullptr)
        return;
    place_.swap(true);
    reference->setInTree(true);
    inPlace_ = 1;
}

InstanceReferenceDeleteRestore::InstanceReferenceDeleteRestore(InstanceReference* reference)
    : place_(reference) {
    Log entry("Creating InstanceReferenceDeleteRestore", Log::Notice);
    reference->setInTree(false);
}

InstanceReferenceDeleteRestore::~InstanceReferenceDeleteRestore() {
    endRestore("Destroying InstanceReferenceDeleteRestore",
               removed_ != 0 ? place_.getReference() : nullptr);
}

void InstanceReferenceDeleteRestore::restore(bool isUndo) {
    const InstanceReferencePlace::Turn turn(place_);
    InstanceReference* const reference = place_.getReference();
    if (reference == nullptr)
        return;
    reference->setInTree(true);
    place_.swap(isUndo);
    removed_ = 0;
}

void InstanceReferenceDeleteRestore::redo() {
    const InstanceReferencePlace::Turn turn(place_);
    InstanceReference* const reference = place_.getReference();
    if (reference == nullptr)
        return;
    place_.swap(true);
    reference->setInTree(false);
    removed_ = 1;
}

} // namespace MVR
