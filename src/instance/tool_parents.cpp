#include "instance/tool_parents.h"

#include "core/contract/adaptor_interface.h"
#include "core/services/core_services.h"
#include "data/sdk/tag.h"
#include "instance/plugin_instance.h"
#include "plugins/instance_manager.h"
#include "plugins/instance_reference.h"

#include <utility>
#include <vector>

namespace MVR {

PluginInstance* getParentTool(const PluginInstance& tool) {
    const InstanceReference* const reference = tool.getReference();
    const InstanceReference* const parent =
        reference != nullptr ? reference->getParentReference() : nullptr;
    return parent != nullptr && parent != tool.getServices().getTree().getRoot()
               ? parent->getInstance()
               : nullptr;
}

void addMasterNodes(PluginInstance& tool, Tag& out) {
    AdaptorInterface& host = *tool.getServices().getAdaptor();
    std::vector<Tag> masters;
    PluginInstance* each = &tool;
    while (each != nullptr) {
        Tag master = Tag::element("masternode");
        if (const PluginInstance* const parent = getParentTool(*each))
            master.addChild(Tag::element("parent", parent->getName()));
        const InstanceReference::Watch saved(each->getReference()); // a tool may end when asked
        if (InstanceReference* const reference = saved.get()) {
            if (reference->getParentReference() != nullptr)
                master.addChild(Tag::element("childindex", reference->getPosition()));
            Tag configuration;
            reference->save(configuration, SaveMask::kOwnRequest);
            master.addChild(std::move(configuration));
        }
        each = saved.get() != nullptr ? getParentTool(*each) : nullptr;
        masters.push_back(std::move(master));
        const InstanceReference::Watch parent(each != nullptr ? each->getReference() : nullptr);
        if (parent.get() == nullptr || host.getNodes(each).empty() || parent.get() == nullptr)
            break;
    }
    for (auto master = masters.rbegin(); master != masters.rend(); ++master)
        out.addChild(std::move(*master));
}

} // namespace MVR
