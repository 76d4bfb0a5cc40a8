// Models, for the adaptor.
#pragma once

#include "core/contract/core_models.h"

namespace MVR {

class CoreServices;

class ModelContract final : public CoreModels {
public:
    explicit ModelContract(CoreServices& services) : services_(services) {}

    std::int32_t getVersion() override { return kVersion; }
    [[nodiscard]] std::int32_t load(std::string path, std::string parent) override;
    [[nodiscard]] std::int32_t save(std::string toolName, std::string path) override;
    Tag getCatalogue() override;

private:
    CoreServices& services_;
};

} // namespace MVR
