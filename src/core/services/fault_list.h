// What could not be done, for CoreFaults.
#pragma once

#include "core/contract/core_faults.h"

#include <string>
#include <utility>
#include <vector>

namespace MVR {

/// The faults of the last operation that makes or saves tools. One for each attachment; operations
/// may nest, but never run in parallel. Host thread only.
class FaultList {
public:
    /// One operation, from its construction to the end of the scope. The outermost empties the
    /// list.
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

    /// Returns the list of the operation that runs, so that those who find a fault needn't be given
    /// it; null while no operation runs.
    [[nodiscard]] static FaultList* underWay();

    [[nodiscard]] const std::vector<CoreFault>& getFaults() const { return faults_; }
    void add(CoreFault fault) { faults_.push_back(std::move(fault)); }
    /// Sets the model, tool and element under way, to which tell() adds.
    void setPlace(CoreFault place) { place_ = std::move(place); }
    /// Adds a fault that the host reports, and logs it.
    void tell(const std::string& text);

private:
    std::vector<CoreFault> faults_;
    CoreFault place_;
};

} // namespace MVR
