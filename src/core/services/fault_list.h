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
    /// list. Outside of operations nothing is added.
    class Operation {
    public:
        explicit Operation(FaultList& list);
        Operation(const Operation&) = delete;
        Operation& operator=(const Operation&) = delete;
        ~Operation();

    private:
        FaultList& list_;
        bool isOutermost_;
    };

    FaultList() = default;
    FaultList(const FaultList&) = delete;
    FaultList& operator=(const FaultList&) = delete;

    [[nodiscard]] const std::vector<CoreFault>& getFaults() const { return faults_; }
    void add(CoreFault fault);
    /// Sets the model, tool and element under way, to which tell() adds.
    void setPlace(CoreFault place) { place_ = std::move(place); }
    /// Adds a fault that the host reports, and logs it. Returns false if no operation runs.
    bool tell(const std::string& text);

private:
    std::vector<CoreFault> faults_;
    CoreFault place_;
    bool isUnderWay_ = false;
};

} // namespace MVR
