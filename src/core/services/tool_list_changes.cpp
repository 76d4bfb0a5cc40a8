#include "core/services/tool_list_changes.h"

#include "core/base/border.h"
#include "core/contract/core_interface.h"
#include "core/contract/core_tools.h"
#include "core/services/core_services.h"

#include <utility>

namespace MVR {

/// The parts of one change, in the host's undo list.
struct UndoParts {
    ToolListChanges& changes;
    std::size_t count = 0;
    std::size_t finished = 0; // in the pass under way
    std::uint32_t pass = 1;   // an undo or a redo

    void check() {
        if (finished == 0 || finished < count)
            return;
        finished = 0;
        ++pass;
        if (changes.parts_.get() != this)
            changes.note();
    }
};

ToolListChanges::UndoPart::UndoPart(ToolListChanges& changes)
    : parts_(changes.parts_ != nullptr ? changes.parts_
                                       : std::make_shared<UndoParts>(UndoParts{changes})) {
    if (changes.depth_ > 0)
        changes.parts_ = parts_;
    ++parts_->count;
}

ToolListChanges::UndoPart::~UndoPart() {
    --parts_->count;
    if (lastPass_ == parts_->pass)
        --parts_->finished;
}

void ToolListChanges::UndoPart::finish() {
    if (lastPass_ == parts_->pass)
        return;
    lastPass_ = parts_->pass;
    ++parts_->finished;
    ++parts_->changes.revision_;
    const std::shared_ptr<UndoParts> parts = parts_; // a listener may clear the undo list
    parts->check();
}

void ToolListChanges::note() {
    ++revision_;
    if (depth_ > 0)
        isChanged_ = true;
    else
        tell();
}

void ToolListChanges::leave() {
    if (--depth_ > 0)
        return;
    parts_.reset();
    if (std::exchange(isChanged_, false))
        tell();
}

void ToolListChanges::tell() {
    if (isSilent_)
        return;
    Util::Message changed(CoreTools::kListChanged);
    (void)Border::call([] { return "A listener"; }, "receive",
                       [&] { services_.getInterface().broadcast(changed); });
}

} // namespace MVR
