// The undo entry of a take: what the recorded values of one tool were before it.
#pragma once

#include "plugins/contract/c_undo.h"

#include <memory>
#include <utility>

namespace MVR {

/// Keeps a deep copy of a sequence of variables and exchanges it with the live one, without
/// copying. Undo and redo come in turn; a second one of a kind has no effect.
///
/// The host may keep the entry longer than the tool lives: the target is only watched, and nothing
/// happens once it is gone.
template <class Variables>
class CVariableModUndo final : public CUndo {
public:
    explicit CVariableModUndo(const std::shared_ptr<Variables>& target)
        : target_(target), saved_(*target) {}

    void restore(bool isUndo) override {
        const std::shared_ptr<Variables> target = target_.lock();
        if (target == nullptr)
            return;
        if (!isUndo) {
            *target = saved_;
        } else if (!swapped_) {
            std::swap(*target, saved_);
            swapped_ = true;
        }
    }

    void redo() override {
        const std::shared_ptr<Variables> target = target_.lock();
        if (target == nullptr || !swapped_)
            return;
        std::swap(*target, saved_);
        swapped_ = false;
    }

private:
    std::weak_ptr<Variables> target_;
    Variables saved_;
    bool swapped_ = false;
};

} // namespace MVR
