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

/// Makes each control of a tool that is made with this one name its tool as it is called now.
void useNewNames(Tag& profile, const ToolLoading& tool) {
    std::vector<Tag*> open{&profile}; // a control may hold others, to any depth
    while (!open.empty()) {
        Tag& element = *open.back();
        open.pop_back();
        for (std::int32_t i = 0; i < element.childCount(); ++i)
            open.push_back(&element.child(i));
        if (!element.hasName(Word::kControl))
            continue;
        InstanceReference* const made =
            tool.index->find(tool.reference, element.attribute(Word::kDevice));
        if (made == nullptr || made->getInstance() == nullptr)
            continue;
        Tag renamed = element;
        renamed.attributeRef(Word::kDevice) = made->getInstance()->getName();
        if (made->getInstance()->findControl(renamed) != nullptr)
            element.attributeRef(Word::kDevice) = made->getInstance()->getName();
    }
}

} // namespace

void InputProfileElement::load(ToolLoading& tool, const Tag& data) {
    Tag profile = data.child(kWord).child(0);
    useNewNames(profile, tool);
    const std::int32_t missing = tool.instance.applyInputProfile(profile);
    if (missing > 0 && missing != PluginInstance::kNoProfile)
        tool.place.log(kWord, "controls that aren't there: " + std::to_string(missing),
                       reportCode(Codes::kControlsMissing));
}

} // namespace MVR
