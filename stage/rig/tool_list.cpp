#include "stage/rig/tool_list.h"

#include "plugins/contract/model_words.h"
#include "stage/base/text.h"
#include "unidevice/sdk/binding_words.h"
#include "unidevice/sdk/profile_managers.h"

#include <utility>

namespace Stage {

namespace {

namespace BindingWord = UniDevice::BindingWord;
using MVR::Tag;

template <typename Call>
void walk(const Tag& configuration, const Call& call) {
    std::vector<const Tag*> waiting = {&configuration}; // the next one last
    while (!waiting.empty()) {
        const Tag& tag = *waiting.back();
        waiting.pop_back();
        if (tag.hasName(MVR::ModelWord::kTool))
            call(tag);
        for (std::int32_t i = tag.childCount(); i-- > 0;)
            if (tag.child(i).hasName(MVR::ModelWord::kTool))
                waiting.push_back(&tag.child(i));
    }
}

} // namespace

std::vector<Binding> listBindings(const Tag& profile) {
    std::vector<Binding> bindings;
    for (std::int32_t i = 0; i < profile.childCount(); ++i) {
        const Tag& property = profile.child(i);
        const Tag& control = property.child(BindingWord::kControl);
        const std::string device = control.attribute(BindingWord::kDevice);
        if (!property.hasName(BindingWord::kProperty) || device.empty())
            continue;
        Binding binding{property.attribute(BindingWord::kName), device, 0,
                        control.attribute(BindingWord::kType), 0};
        // A number that can't be read stays 0, as the core takes it.
        (void)toNumber(control.attribute(BindingWord::kDeviceIndex), binding.deviceIndex);
        (void)toNumber(control.attribute(BindingWord::kIndex), binding.index);
        bindings.push_back(std::move(binding));
    }
    return bindings;
}

ToolPlan listTool(const Tag& tag) {
    ToolPlan plan;
    plan.type = MVR::ModelWord::typeOf(tag);
    plan.name = tag.child(MVR::ModelWord::kName).value();
    plan.bindings =
        listBindings(tag.child(MVR::ModelWord::kInputProfile).child(MVR::kProfileElement));
    return plan;
}

std::vector<ToolPlan> listTools(const Tag& configuration) {
    std::vector<ToolPlan> tools;
    walk(configuration, [&tools](const Tag& tag) { tools.push_back(listTool(tag)); });
    return tools;
}

void forEachTool(const Tag& configuration, const std::function<void(const Tag& tool)>& call) {
    walk(configuration, call);
}

} // namespace Stage
