#pragma once

namespace MVR {

/// One entry of the host's undo list: an object that can go back and forward.
///
/// 1. Whoever changes something makes one and passes it to `addUndo` while an undo step is open: in
///    create(), in load() or in a take.
/// 2. From then on the host owns it.
/// 3. The host calls restore(true) to undo and redo() to redo, in turn.
/// 4. The host calls destroy() once, when it drops the step, and at the latest before it detaches.
///
/// Only the host calls the operations: those of 3 when its user asks, and in undo() and
/// cancelUndo() of AdaptorInterface. Except in cancelUndo() it calls them only while no step is
/// open, so never during a take. All calls are made on the host's user-interface thread. No
/// operation reports a failure.
class CUndo {
public:
    /// Goes back. `isUndo` is true for an undo. With false the host repeats it for its own
    /// purposes, such as restoring the start of a step that is still open; a later restore(true)
    /// then still goes back to the same state. The core never needs it.
    virtual void restore(bool isUndo) = 0;

    /// Goes forward again; only after restore(true), and once for each.
    virtual void redo() = 0;

    /// Frees the object in the library that made it; the only way to free one.
    virtual void destroy() { delete this; }

    virtual ~CUndo() = default;
};

} // namespace MVR
