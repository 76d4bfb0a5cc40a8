#pragma once

#include "plugins/contract/c_camera_plugin.h"
#include "plugins/contract/extension_ids.h"

#include <cstdint>
#include <string>
#include <vector>

namespace MVR {

/// Base of the abstract kinds that the tree itself is made of. Internal: the user can't create one.
class BuiltInPlugin : public CCameraPlugin {
public:
    std::vector<std::int32_t> getExtensions() override { return {DescriptorExtension::kInternal}; }
    std::string getName() override { return texts_.name; }
    std::string getKey() override { return texts_.key; }
    std::string getDescription() override { return texts_.description; }
    std::string getCategory() override { return "Abstract"; }
    std::string getAbout() override { return texts_.about; }
    std::int32_t getVersion() override { return 8101; }

protected:
    struct Texts {
        const char* name;
        const char* key;
        const char* description;
        const char* about;
    };
    explicit BuiltInPlugin(const Texts& texts) : texts_(texts) {}

private:
    Texts texts_;
};

} // namespace MVR
