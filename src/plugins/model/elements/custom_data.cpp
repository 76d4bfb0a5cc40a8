#include "plugins/model/elements/custom_data.h"

#include "core/base/sdk/log.h"
#include "core/services/core_services.h"
#include "core/services/fault_list.h"
#include "instance/plugin_instance.h"
#include "plugins/contract/model_words.h"
#include "plugins/instance_reference.h"
#include "plugins/model/elements/table.h"

#include <string>
#include <utility>

namespace MVR {

void CustomDataElement::save(const ToolSaving& tool, Tag& out) {
    const Tag unfilled = Tag::element(kWord);
    Tag own = unfilled;
    const InstanceReference::Watch self(&tool.reference);
    tool.instance.getCustomData(own);
    if (self.get() == nullptr || own == unfilled || own.isEmpty()) // it may have removed itself
        return;
    const std::string& name = own.name();
    const bool isElement = own.kind() == Tag::Element && !name.empty();
    if (!isElement || name != kWord) {
        const bool isDropped = !isElement || name == ModelWord::kTool || isElementOfTool(name);
        const std::string text = "the custom data of " + tool.instance.getName() +
                                 (isDropped ? " is dropped" : " won't be given back to it") +
                                 ", as it isn't an element \"customdata\"";
        Log(Log::Warning).write(text);
        tool.instance.getServices().getFaults().add({"", "", "", text, 0});
        if (isDropped)
            return;
    }
    out.addChild(std::move(own));
}

void CustomDataElement::load(ToolLoading& tool, const Tag& data) {
    tool.instance.setCustomData(data.child(kWord));
}

} // namespace MVR
