#include "core/services/fault_list.h"

#include "core/base/sdk/log.h"

#include <utility>

namespace MVR {
namespace {

FaultList* listUnderWay = nullptr; // not owned

} // namespace

FaultPlace::~FaultPlace() {
    if (listUnderWay != nullptr && listUnderWay->getPlace() == this)
        listUnderWay->setPlace(nullptr, "");
}

FaultList::Operation::Operation(FaultList& list) : outer_(std::exchange(listUnderWay, &list)) {
    if (outer_ != nullptr)
        return;
    list.faults_.clear();
    list.setPlace(nullptr, "");
}

FaultList::Operation::~Operation() {
    listUnderWay = outer_;
}

FaultList* FaultList::underWay() {
    return listUnderWay;
}

void FaultList::tell(const std::string& text) {
    CoreFault& fault = faults_.emplace_back(place_ != nullptr ? place_->describe() : CoreFault());
    fault.element = element_;
    fault.text = text;
    Log(Log::Warning).write(toText(fault));
}

} // namespace MVR
