// The running take and the notes of the last one, for the adaptor.
#pragma once

#include "core/contract/core_takes.h"

namespace MVR {

class CoreServices;

class TakeContract final : public CoreTakes {
public:
    explicit TakeContract(CoreServices& services) : services_(services) {}

    std::int32_t getVersion() override { return kVersion; }
    double getDelay() override;
    bool end(std::string reason) override;
    std::vector<CoreTakeNote> list() override;

private:
    CoreServices& services_;
};

} // namespace MVR
