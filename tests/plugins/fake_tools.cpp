// A library of tools in the variants of FAKE_VERSION (0: no export) and FAKE_TOOLS (-1: no
// export).
#include "core/base/sdk/export.h"
#include "plugins/contract/c_camera_plugin.h"
#include "plugins/contract/extension_ids.h"

namespace {

class FakeTool final : public MVR::CCameraPlugin {
public:
    explicit FakeTool(std::int32_t index) : index_(index) {}
    MVR::CCamera* create(MVR::CCamera::CreateParam* param) override {
        return new MVR::CCamera(param);
    }
    std::string getName() override { return "Fake " + std::to_string(index_); }
    std::string getDescription() override { return "made for a test"; }
    std::string getCategory() override { return index_ == 0 ? "Cameras;Vehicles;;Lost" : ";x"; }
    std::int32_t getVersion() override { return 12345; }
    std::intptr_t extend(std::int32_t id, std::intptr_t data) override {
        if (id == MVR::DescriptorExtension::kOldNames)
            reinterpret_cast<std::vector<std::string>*>(data)->assign({"Older", "Fake 1"});
        return 0;
    }

private:
    std::int32_t index_;
};

} // namespace

#if FAKE_VERSION != 0
MVR_EXPORT std::int32_t getVersion() {
    return FAKE_VERSION;
}
#endif

#if FAKE_TOOLS >= 0
MVR_EXPORT MVR::CCameraPlugin* getPlugin(std::int32_t index) {
    return index < FAKE_TOOLS ? new FakeTool(index) : nullptr;
}
#endif
