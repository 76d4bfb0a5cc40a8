// What there is to tell of the last take, for CoreTakes.
#pragma once

#include "core/contract/core_takes.h"

#include <utility>
#include <vector>

namespace MVR {

/// One for each attachment; emptied when a take begins. Host thread only.
class TakeNotes {
public:
    void clear() { notes_.clear(); }
    void add(CoreTakeNote note) { notes_.push_back(std::move(note)); }
    [[nodiscard]] const std::vector<CoreTakeNote>& list() const { return notes_; }

private:
    std::vector<CoreTakeNote> notes_;
};

} // namespace MVR
