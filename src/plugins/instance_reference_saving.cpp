#include "plugins/instance_reference.h"

#include "core/adaptor_interface.h"
#include "core/core_implementation.h"
#include "core/log.h"
#include "instance/plugin_instance.h"
#include "plugins/plugin.h"
#include "plugins/root_plugin.h"
#include "plugins/scene_node.h"

#include <cstddef>
#include <deque>

namespace MVR {
namespace {

/// How `node` of `instance` hangs in the scene: an empty element unless below a tool's node.
Tag saveParent(SceneNode& node, const PluginInstance& instance) {
    Tag tag = Tag::element("parent");
    SceneNode* const parent = node.getParent();
    if (parent == nullptr)
        return tag;
    // Every CInterface is a tool of a core.
    const auto* const owner = static_cast<const PluginInstance*>(parent->getOwner());
    if (owner != nullptr && owner->isInTree()) {
        tag = Tag::element("parent", parent->getName());
        if (owner != &instance)
            tag.attributeRef("external") = owner->getName();
    } else if (owner != nullptr) {
        Log entry("The specified node's parent is not included in the list", Log::Notice);
        entry.write("node name", node.getName(), Log::OwnLevel);
        entry.write("parent name", parent->getName(), Log::OwnLevel);
        entry.write("parent owner name", owner->getName(), Log::OwnLevel);
    }
    node.release(parent);
    return tag;
}

} // namespace

std::int32_t InstanceReference::save(Tag& out, std::uint32_t mask) {
    struct Save {
        Save(InstanceReference* reference, Tag& tag, std::uint32_t saveMask)
            : saved(reference), out(tag), entry("Creating configuration file", Log::Notice) {
            entry.write("instance", reference->getLabel(), Log::OwnLevel);
            reference->saveThis(tag, saveMask);
        }
        InstanceReference* saved;
        Tag& out;
        Log entry;
        std::size_t nextChild = 0;
    };
    std::deque<Save> open; // not the machine's stack, which a deep tree could exhaust
    open.emplace_back(this, out, mask);
    while (!open.empty()) {
        Save& save = open.back();
        if ((mask & SaveMask::kNoChildren) != 0 ||
            save.nextChild >= save.saved->getChildren().size()) {
            open.pop_back();
            continue;
        }
        Tag& child = save.out.addChild(Tag::element("MVR_Plugin"));
        open.emplace_back(save.saved->getChildReference(save.nextChild++), child, mask);
    }
    return 0;
}

/// This tool without those below it.
void InstanceReference::saveThis(Tag& out, std::uint32_t mask) {
    if (instance_ == nullptr)
        return;
    const std::string type = instance_->getPlugin()->getName();
    if (type == RootPlugin::kName) {
        Log(Log::Notice).write("Creating MVR tag");
        out = Tag::element("MVR");
        return;
    }
    out = Tag::element("MVR_Plugin");
    out.attributeRef("version") = kToolDataVersion;
    out.addChild(Tag::element("type", type));
    out.addChild(Tag::element("name", instance_->getName()));
    if (!isShown())
        out.addChild(Tag::element("visible", "false"));
    if (!isExpanded())
        out.addChild(Tag::element("expanded", "false"));
    if (!isChecked())
        out.addChild(Tag::element("checked", "false"));
    if ((mask & SaveMask::kCustomData) != 0) {
        Tag customData;
        out.addChild(instance_->getCustomData(customData));
    }
    if ((mask & SaveMask::kInputProfile) != 0)
        out.addChild(Tag::element("inputprofile")).addChild(instance_->getInputProfile(""));
    if ((mask & SaveMask::kAnyNodeInfo) != 0)
        out.addChild(saveNodes(mask));
}

Tag InstanceReference::saveNodes(std::uint32_t mask) {
    Log entry("Creating node tag", Log::Notice);
    Tag nodeInfo = Tag::element("nodeinfo");
    for (SceneNode* node : getCore()->getAdaptor()->getNodes(instance_)) {
        Tag& tag = nodeInfo.addChild(Tag::element("node"));
        tag.attributeRef("name") = node->getName();
        if ((mask & SaveMask::kParent) != 0)
            tag.addChild(saveParent(*node, *instance_));
        if ((mask & SaveMask::kVisible) != 0)
            tag.addChild(Tag::element("visible", node->isVisible() ? "true" : "false"));
    }
    return nodeInfo;
}

} // namespace MVR
