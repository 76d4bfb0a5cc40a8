#include "stage/rig/tool_list.h"

#include "stage/base/text.h"

#include <unordered_map>
#include <utility>

namespace Stage {

namespace {

using MVR::Tag;

constexpr const char* kToolElement = "MVR_Plugin";

/// `Element` is Tag or const Tag.
template <typename Element, typename Call>
void walk(Element& configuration, const Call& call) {
    std::vector<Element*> waiting = {&configuration}; // the next one last
    while (!waiting.empty()) {
        Element& tag = *waiting.back();
        waiting.pop_back();
        if (tag.hasName(kToolElement)) {
            call(tag);
        }
        for (std::int32_t i = tag.childCount(); i-- > 0;) {
            if (tag.child(i).hasName(kToolElement)) {
                waiting.push_back(&tag.child(i));
            }
        }
    }
}

} // namespace

std::vector<Binding> listBindings(const Tag& profile) {
    std::vector<Binding> bindings;
    for (std::int32_t i = 0; i < profile.childCount(); ++i) {
        const Tag& property = profile.child(i);
        const Tag& control = property.child("control");
        const std::string device = control.attribute("device");
        if (!property.hasName("property") || device.empty()) {
            continue;
        }
        Binding binding{property.attribute("name"), device, 0, control.attribute("type"), 0};
        // A number that can't be read stays 0, as in the core.
        (void)toNumber(control.attribute("devindex"), binding.deviceIndex);
        (void)toNumber(control.attribute("index"), binding.index);
        bindings.push_back(std::move(binding));
    }
    return bindings;
}

ToolPlan listTool(const Tag& tag) {
    ToolPlan plan;
    plan.type = tag.child("type").value();
    if (plan.type.empty()) {
        plan.type = tag.child("pluginname").value();
    }
    plan.name = tag.child("name").value();
    plan.bindings = listBindings(tag.child("inputprofile").child("profile"));
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

void forEachTool(Tag& configuration, const std::function<void(Tag& tool)>& call) {
    walk(configuration, call);
}

void keepBindings(Tag& inputs, const Tag& saved) {
    const Tag& savedProfile = saved.child("profile");
    std::unordered_map<std::string, const Tag*> controls;
    for (std::int32_t i = 0; i < savedProfile.childCount(); ++i) {
        const Tag& property = savedProfile.child(i);
        if (!property.child("control").attribute("device").empty()) {
            controls.emplace(property.attribute("name"), &property.child("control"));
        }
    }
    Tag& profile = inputs.child("profile");
    for (std::int32_t i = 0; i < profile.childCount(); ++i) {
        Tag& property = profile.child(i);
        const auto control = controls.find(property.attribute("name"));
        if (property.hasName("property") && control != controls.end() &&
            property.child("control").attribute("device").empty()) {
            property.addChild(*control->second);
        }
    }
}

} // namespace Stage
