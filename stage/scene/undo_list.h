#pragma once

#include "plugins/contract/c_undo.h"

#include <cstddef>
#include <deque>
#include <functional>
#include <memory>
#include <string>
#include <vector>

namespace Stage {

/// A change of the host's own, as two calls.
class UndoAction final : public MVR::CUndo {
public:
    UndoAction(std::function<void()> undo, std::function<void()> redo)
        : undo_(std::move(undo)), redo_(std::move(redo)) {}

    void restore(bool isUndo) override;
    void redo() override;

private:
    std::function<void()> undo_;
    std::function<void()> redo_;
};

/// The undo list of the host.
///
/// 1. begin(name), any number of add(object), end(). Steps nest: what an inner step holds joins the
///    outer one, and the outermost names the entry. A step that holds nothing leaves no entry.
/// 2. undo() undoes the latest entry, its objects in reverse order; redo() redoes it, in order. A
/// new
///    entry drops all that could be redone.
/// 3. clear() before the core is detached.
///
/// The list owns the objects and frees them by destroy(), those of an entry in the order in which
/// they came.
class UndoList {
public:
    /// Entries kept; the oldest is dropped first.
    static constexpr std::size_t kMostEntries = 200;

    UndoList() = default;
    UndoList(const UndoList&) = delete;
    UndoList& operator=(const UndoList&) = delete;
    ~UndoList() { clear(); }

    void begin(std::string name);
    /// Outside a step the object becomes an entry of its own. While an undo or redo runs it is
    /// dropped, since the change that it would undo is part of that.
    void add(MVR::CUndo* object);
    /// As add(), for a change of the host's own.
    void add(std::function<void()> undo, std::function<void()> redo);
    void end();
    /// Closes the innermost step, undoes it and drops it.
    void cancel();
    [[nodiscard]] bool isOpen() const { return !open_.empty(); }

    /// Return false and do nothing if there is no entry or a step is open.
    bool undo();
    bool redo();
    /// Drops everything, even open steps, and undoes nothing.
    void clear();

    [[nodiscard]] std::size_t getUndoCount() const { return undoable_.size(); }
    /// Returns the name of the entry that undo() would undo; empty if there is none.
    [[nodiscard]] std::string getUndoName() const;

private:
    struct Destroy {
        void operator()(MVR::CUndo* object) const { object->destroy(); }
    };
    struct Step {
        std::string name;
        std::vector<std::unique_ptr<MVR::CUndo, Destroy>> objects;
    };

    static void takeBack(Step& step);
    static void drop(Step& step);
    void push(Step step);

    std::vector<Step> open_;     // innermost last
    std::deque<Step> undoable_;  // can be undone, latest last
    std::vector<Step> redoable_; // can be redone, next last
    bool isRunning_ = false;
};

} // namespace Stage
