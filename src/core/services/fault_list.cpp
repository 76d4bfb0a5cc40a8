#include "core/services/fault_list.h"

#include "core/base/sdk/log.h"

#include <utility>

namespace MVR {

FaultList::Operation::Operation(FaultList& list)
    : list_(list), isOutermost_(!std::exchange(list.isUnderWay_, true)) {
    if (!isOutermost_)
        return;
    list.faults_.clear();
    list.setPlace(nullptr, "");
}

FaultList::Operation::~Operation() {
    if (isOutermost_)
        list_.isUnderWay_ = false;
}

void FaultList::add(CoreFault fault) {
    if (isUnderWay_)
        faults_.push_back(std::move(fault));
}

bool FaultList::tell(const std::string& text) {
    CoreFault fault = isUnderWay_ && place_ != nullptr ? place_->describe() : CoreFault();
    fault.element = element_;
    fault.text = text;
    Log(Log::Warning).write(isUnderWay_ ? toText(fault) : text);
    add(std::move(fault));
    return isUnderWay_;
}

} // namespace MVR
