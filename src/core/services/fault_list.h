/// \file
/// What could not be done, for CoreFaults.
#pragma once

#include "core/contract/core_faults.h"

#include <string>
#include <utility>
#include <vector>

namespace MVR {

/// The faults of the last operation that makes or saves tools. One for each attachment; operations
/// run one inside the other, never beside each other. Host thread only.
class FaultList {
public:
    /// One operation, from its beginning to the end of the scope. The outermost empties the list.
    class Operation {
    public:
        explicit Operation(FaultList& list);
        Operation(const Operation&) = delete;
        Operation& operator=(const Operation&) = delete;
        ~Operation();

    private:
        FaultList* outer_;
    };

    FaultList() = default;
    FaultList(const FaultList&) = delete;
    FaultList& operator=(const FaultList&) = delete;

    /// The list that takes faults now, so that those who find one need no way to it; null while no
    /// operation runs.
    [[nodiscard]] static FaultList* underWay();

    [[nodiscard]] const std::vector<CoreFault>& getFaults() const { return faults_; }
    void add(CoreFault fault) { faults_.push_back(std::move(fault)); }
    /// The model, tool and element that are under way, which tell() adds to.
    void setPlace(CoreFault place) { place_ = std::move(place); }
    /// Adds what the host tells, and logs it.
    void tell(const std::string& text);

private:
    std::vector<CoreFault> faults_;
    CoreFault place_;
};

} // namespace MVR
