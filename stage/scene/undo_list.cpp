#include "stage/scene/undo_list.h"

#include <iterator>
#include <utility>

namespace Stage {

void UndoAction::restore(bool isUndo) {
    (void)isUndo; // neither call depends on how often the other has run
    undo_();
}

void UndoAction::redo() {
    redo_();
}

void UndoList::begin(std::string name) {
    open_.push_back({std::move(name), {}});
}

void UndoList::add(MVR::CUndo* object) {
    std::unique_ptr<MVR::CUndo, Destroy> owned(object);
    if (object == nullptr || isRunning_)
        return;
    if (!open_.empty()) {
        open_.back().objects.push_back(std::move(owned));
        return;
    }
    Step step{"Change", {}};
    step.objects.push_back(std::move(owned));
    push(std::move(step));
}

void UndoList::add(std::function<void()> undo, std::function<void()> redo) {
    add(new UndoAction(std::move(undo), std::move(redo)));
}

void UndoList::end() {
    if (open_.empty())
        return;
    Step step = std::move(open_.back());
    open_.pop_back();
    if (open_.empty()) {
        push(std::move(step));
        return;
    }
    auto& outer = open_.back().objects;
    outer.insert(outer.end(), std::make_move_iterator(step.objects.begin()),
                 std::make_move_iterator(step.objects.end()));
}

void UndoList::cancel() {
    if (open_.empty())
        return;
    Step step = std::move(open_.back());
    open_.pop_back();
    const bool wasRunning = std::exchange(isRunning_, true);
    takeBack(step);
    isRunning_ = wasRunning;
    drop(step);
}

bool UndoList::undo() {
    if (undoable_.empty() || isOpen() || isRunning_)
        return false;
    redoable_.push_back(std::move(undoable_.back()));
    undoable_.pop_back();
    isRunning_ = true;
    takeBack(redoable_.back());
    isRunning_ = false;
    return true;
}

bool UndoList::redo() {
    if (redoable_.empty() || isOpen() || isRunning_)
        return false;
    undoable_.push_back(std::move(redoable_.back()));
    redoable_.pop_back();
    isRunning_ = true;
    for (auto& object : undoable_.back().objects)
        object->redo();
    isRunning_ = false;
    return true;
}

void UndoList::clear() {
    // Latest first: an object may need what an earlier step created.
    while (!open_.empty()) {
        drop(open_.back());
        open_.pop_back();
    }
    for (Step& step : redoable_)
        drop(step);
    redoable_.clear();
    while (!undoable_.empty()) {
        drop(undoable_.back());
        undoable_.pop_back();
    }
}

std::string UndoList::getUndoName() const {
    return undoable_.empty() ? std::string() : undoable_.back().name;
}

void UndoList::takeBack(Step& step) {
    for (auto object = step.objects.rbegin(); object != step.objects.rend(); ++object)
        (*object)->restore(true);
}

void UndoList::drop(Step& step) {
    // In order: the core's object for a tool comes before the host's for the tool's nodes, so the
    // tool is freed before what it points to.
    for (auto& object : step.objects)
        object.reset();
    step.objects.clear();
}

void UndoList::push(Step step) {
    if (step.objects.empty())
        return;
    for (Step& dropped : redoable_)
        drop(dropped);
    redoable_.clear();
    undoable_.push_back(std::move(step));
    if (undoable_.size() > kMostEntries) {
        drop(undoable_.front());
        undoable_.pop_front();
    }
}

} // namespace Stage
