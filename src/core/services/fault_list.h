// What could not be done, for CoreFaults.
#pragma once

#include "core/contract/core_faults.h"

#include <string>
#include <utility>
#include <vector>

namespace MVR {

/// Where the work stands, for faults that the host tells of. Nothing tells of one any more when it
/// is gone.
class FaultPlace {
public:
    FaultPlace() = default;
    FaultPlace(const FaultPlace&) = default;
    FaultPlace& operator=(const FaultPlace&) = default;
    virtual ~FaultPlace() = default;

    /// Returns a fault with the model and the tool.
    [[nodiscard]] virtual CoreFault describe() const = 0;
};

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
    /// Sets the tool under way, or null for none, and the element of it: what tell() tells of.
    void setPlace(const FaultPlace* place, const std::string& element) {
        place_ = place;
        element_ = element;
    }
    [[nodiscard]] const FaultPlace* getPlace() const { return place_; }
    /// Adds a fault that the host reports, and logs it. Returns false if no operation runs.
    bool tell(const std::string& text);

private:
    std::vector<CoreFault> faults_;
    const FaultPlace* place_ = nullptr; // not owned
    std::string element_;
    bool isUnderWay_ = false;
};

} // namespace MVR
