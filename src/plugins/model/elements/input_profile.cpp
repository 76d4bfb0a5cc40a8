#include "plugins/model/elements/input_profile.h"

#include "core/base/error_codes.h"
#include "plugins/instance_reference.h"
#include "plugins/model/instance_index.h"
#include "plugins/model/model_place.h"
#include "unidevice/sdk/binding_words.h"

#include <string>
#include <utility>
#include <vector>

namespace MVR {
namespace {

namespace Word = UniDevice::BindingWord;

/// Returns the name that the tool of `control` has now, if it is made with this one and offers such
/// a control; otherwise "".
std::string findNewName(const Tag& control, const ToolLoading& tool) {
    const std::string device = control.attribute(Word::kDevice);
    InstanceReference* const made = tool.index->find(tool.reference, device);
    PluginInstance* const source = made != nullptr ? made->getInstance() : nullptr;
    if (source == nullptr || source->getName() == device)
        return "";
    Tag renamed = control;
    renamed.attributeRef(Word::kDevice) = source->getName();
    return source->findControl(renamed) != nullptr ? source->getName() : "";
}

/// Calls `visit` for each control in `profile`; an emulated one has others, to any depth.
template <class Element, class Visit>
void forEachControl(Element& profile, const Visit& visit) {
    std::vector<Element*> open{&profile};
    while (!open.empty()) {
        Element& element = *open.back();
        open.pop_back();
        for (std::int32_t i = 0; i < element.childCount(); ++i) {
            Element& child = element.child(i);
            const bool isControl = child.hasName(Word::kControl);
            if (isControl)
                visit(child);
            if (isControl || child.hasName(Word::kProperty))
                open.push_back(&child);
        }
    }
}

bool hasNewNames(const Tag& profile, const ToolLoading& tool) {
    bool isFound = false;
    forEachControl(profile, [&](const Tag& control) {
        isFound = isFound || !findNewName(control, tool).empty();
    });
    return isFound;
}

Tag withNewNames(Tag profile, const ToolLoading& tool) {
    forEachControl(profile, [&tool](Tag& control) {
        if (const std::string name = findNewName(control, tool); !name.empty())
            control.attributeRef(Word::kDevice) = name;
    });
    return profile;
}

} // namespace

void InputProfileElement::load(ToolLoading& tool, const Tag& data) {
    const Tag& profile = data.child(kWord).child(0);
    const std::int32_t missing = tool.instance.applyInputProfile(
        hasNewNames(profile, tool) ? withNewNames(profile, tool) : profile);
    if (missing > 0 && missing != PluginInstance::kNoProfile)
        tool.place.log(kWord, "controls that aren't there: " + std::to_string(missing),
                       reportCode(Codes::kControlsMissing));
}

} // namespace MVR
