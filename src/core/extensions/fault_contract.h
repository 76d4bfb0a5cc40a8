// The faults of the last operation, for the adaptor.
#pragma once

#include "core/contract/core_faults.h"

namespace MVR {

class CoreServices;

class FaultContract final : public CoreFaults {
public:
    explicit FaultContract(CoreServices& services) : services_(services) {}

    std::int32_t getVersion() override { return kVersion; }
    std::vector<CoreFault> list() override;
    bool tell(std::string text) override;

private:
    CoreServices& services_;
};

} // namespace MVR
