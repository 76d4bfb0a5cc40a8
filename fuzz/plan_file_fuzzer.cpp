// A file of bindings for the stage. What is accepted becomes a configuration that can be read
// again.

#include "input_file.h"
#include "stage/rig/tool_plan.h"

#include <cmath>
#include <cstdlib>

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    Stage::ToolPlan plan{"Tracked Object", "Camera", {}, {}};
    std::string error;
    if (!Stage::readPlanFile(writeInput(data, size), plan, error)) {
        if (error.empty())
            std::abort();
        return 0;
    }
    for (const Stage::Binding& binding : plan.bindings)
        if (binding.property.empty() || binding.device.empty() || binding.type.empty())
            std::abort();
    for (const Stage::Setting& setting : plan.settings)
        if (!std::isfinite(setting.value) || setting.toText().empty())
            std::abort();
    if (!Stage::toProfile(plan).hasName("profile"))
        std::abort();
    return 0;
}
