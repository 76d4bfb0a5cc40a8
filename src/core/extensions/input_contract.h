// The input devices, for the adaptor.
#pragma once

#include "core/contract/core_inputs.h"

namespace MVR {

class CoreServices;

class InputContract final : public CoreInputs {
public:
    explicit InputContract(CoreServices& services) : services_(services) {}

    std::int32_t getVersion() override { return kVersion; }
    std::vector<CoreDevice> list() override;
    [[nodiscard]] std::int32_t setListening(bool isListening) override;
    [[nodiscard]] std::int32_t update() override;
    std::vector<CoreDriver> listDrivers() override;

private:
    CoreServices& services_;
};

} // namespace MVR
