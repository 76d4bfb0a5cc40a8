#pragma once

namespace MVR {

/// One entry of the host's undo list: an object that can go back and forward.
///
/// 1. Whoever changes something makes one and hands it to `addUndo` while an undo step is open.
/// 2. From then on the host owns it.
/// 3. The host calls restore(true) to undo and redo() to redo, in turn.
/// 4. The host calls destroy() once, when it drops the step, and at the latest before it detaches.
///
/// All calls come on the host's user-interface thread. No operation reports a failure.
class CUndo {
public:
    /// Goes back. `isUndo` is true for an undo; with false it is a repeat for the host's own
    /// purposes, after which a later restore(true) still goes back to the same state.
    virtual void restore(bool isUndo) = 0;

    /// Goes forward again after restore(true).
    virtual void redo() = 0;

    /// Frees the object in the library that made it; the only way to free one.
    virtual void destroy() { delete this; }

    virtual ~CUndo() = default;
};

} // namespace MVR
