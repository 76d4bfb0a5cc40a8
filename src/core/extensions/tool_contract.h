// The tree of tools, for the adaptor.
#pragma once

#include "core/contract/core_tools.h"

namespace MVR {

class CoreServices;

class ToolContract final : public CoreTools {
public:
    explicit ToolContract(CoreServices& services) : services_(services) {}

    std::int32_t getVersion() override { return kVersion; }
    std::vector<CoreTool> list() override;
    CInterface* find(std::string name) override;
    [[nodiscard]] std::int32_t create(std::string type, std::string name, std::string parent,
                                      Tag bindings, std::string* createdName) override;
    [[nodiscard]] std::int32_t rename(std::string name, std::string wanted,
                                      std::string* taken) override;
    [[nodiscard]] std::int32_t remove(std::string name, bool withObjects) override;
    [[nodiscard]] std::int32_t select(std::string name) override;
    std::string getSelected() override;
    Tag getBindings(std::string name) override;
    [[nodiscard]] std::int32_t setBindings(std::string name, Tag profile,
                                           std::int32_t* missing) override;
    Tag getExactConfiguration() override;
    std::vector<CoreToolInput> listInputs(std::string name) override;
    [[nodiscard]] std::int32_t setMapping(std::string name, Tag property) override;
    [[nodiscard]] bool getRecordedSpan(double* start, double* end) override;

private:
    CoreServices& services_;
};

} // namespace MVR
