// What the host's undo list holds for the tree of tools. Each object remembers a place and swaps
// it with the present place of its reference. One whose reference was destroyed does nothing.
#pragma once

#include "core/services/tool_list_changes.h"
#include "plugins/contract/c_undo.h"
#include "plugins/instance_reference.h"

#include <cstdint>

namespace MVR {

/// The place that a reference goes back to.
class InstanceReferencePlace {
public:
    /// One call of the host's undo list, of which the listeners of the core are told.
    class Turn {
    public:
        explicit Turn(InstanceReferencePlace& place) : place_(place) {}
        Turn(const Turn&) = delete;
        Turn& operator=(const Turn&) = delete;
        ~Turn() { place_.part_.finish(); }

    private:
        InstanceReferencePlace& place_;
    };

    /// Remembers the present place of `reference`.
    explicit InstanceReferencePlace(InstanceReference* reference);
    /// Brings the reference to the place; `keepsPresent` remembers the place that it had.
    void swap(bool keepsPresent);
    [[nodiscard]] InstanceReference* getReference() const { return reference_.get(); }

private:
    InstanceReference::Watch reference_;
    InstanceReference::Watch parent_; // null: the place is outside the tree
    std::int32_t index_;
    ToolListChanges::UndoPart part_;
};

/// A reference was moved. Never owns it.
class InstanceReferenceMoveRestore final : public CUndo {
public:
    explicit InstanceReferenceMoveRestore(InstanceReference* reference) : place_(reference) {}
    void restore(bool isUndo) override;
    void redo() override { restore(true); }

private:
    InstanceReferencePlace place_;
};

/// A reference was made. Owns it while the step is undone.
class InstanceReferenceCreateRestore final : public CUndo {
public:
    /// Made right after the reference, which has no parent yet.
    explicit InstanceReferenceCreateRestore(InstanceReference* reference);
    ~InstanceReferenceCreateRestore() override;
    void restore(bool isUndo) override;
    void redo() override;

private:
    InstanceReferencePlace place_;
    std::int32_t inPlace_ = 1;
};

/// A reference was deleted. Owns it unless the step is undone.
class InstanceReferenceDeleteRestore final : public CUndo {
public:
    /// Marks the reference as out of the tree; the caller removes it from its parent.
    explicit InstanceReferenceDeleteRestore(InstanceReference* reference);
    ~InstanceReferenceDeleteRestore() override;
    void restore(bool isUndo) override;
    void redo() override;

private:
    InstanceReferencePlace place_;
    std::int32_t removed_ = 1;
};

} // namespace MVR
