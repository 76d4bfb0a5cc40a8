#include "plugins/instance_reference.h"

#include "core/error_code.h"
#include "core/log.h"
#include "instance/plugin_instance.h"
#include "plugins/c_mesh.h"
#include "plugins/extension_ids.h"
#include "plugins/scene_node.h"

#include <cstddef>
#include <deque>
#include <string_view>
#include <unordered_map>

namespace MVR {
namespace {

std::int32_t reportInvalidData() {
    return ErrorCode::instance()->report("INVALIDOKFDATASTRUCTURE");
}

/// The node of this name, made if the scene doesn't have it; null if the host can't.
SceneNode* getOrCreateNode(PluginInstance& instance, const std::string& name) {
    if (SceneNode* const node = instance.createNode(name))
        return node;
    CMesh mesh;
    return instance.createNode(name, 0, reinterpret_cast<std::intptr_t>(&mesh), 0);
}

} // namespace

/// A pass over one reference under way, with its open entry in the log.
struct InstanceReference::Pass {
    Pass(InstanceReference* passed, const Tag& tag, std::uint32_t stages)
        : reference(passed), data(tag),
          entry("Setting object attributes for " + passed->getInstanceName(), Log::Notice) {
        entry.write("flags", static_cast<std::int32_t>(stages), Log::OwnLevel);
    }

    /// The data of a child: the first "MVR_Plugin" of its name; null if there is none.
    const Tag* find(const InstanceReference& child) {
        if (byName.empty())
            for (std::int32_t i = 0; i < data.childCount(); ++i)
                if (data.child(i).hasName("MVR_Plugin"))
                    byName.emplace(data.child(i).child("name").value(), &data.child(i));
        const auto found = byName.find(child.getInstanceName());
        return found != byName.end() ? found->second : nullptr;
    }

    InstanceReference* reference;
    const Tag& data;
    Log entry;
    std::size_t nextChild = 0;
    std::unordered_map<std::string_view, const Tag*> byName;
};

std::int32_t InstanceReference::applyAttributes(const Tag& data, std::uint32_t stages) {
    std::deque<Pass> open; // not the machine's stack, which a deep tree could exhaust
    const auto begin = [&](InstanceReference* reference, const Tag& tag) {
        open.emplace_back(reference, tag, stages);
        bool goesDown = true;
        const std::int32_t code = reference->applyToThis(tag, stages, goesDown);
        if (!goesDown)
            open.pop_back();
        return code;
    };
    const std::int32_t result = begin(this, data);
    while (!open.empty()) {
        Pass& pass = open.back();
        if (pass.nextChild >= pass.reference->getChildren().size()) {
            open.pop_back();
            continue;
        }
        InstanceReference* const child = pass.reference->getChildReference(pass.nextChild++);
        if (const Tag* const tag = pass.find(*child))
            (void)begin(child, *tag); // a failure further down stops nothing
    }
    return result;
}

std::int32_t InstanceReference::applyToThis(const Tag& data, std::uint32_t stages, bool& goesDown) {
    if (data.hasName("MVR") || instance_ == nullptr)
        return 0;
    goesDown = false;
    Log log(Log::Error);
    if (!data.hasName("MVR_Plugin")) {
        log.write("Error: The provided data structure is not a MVR_Plugin tag");
        return reportInvalidData();
    }
    if (data.child("name").value() != getInstanceName()) {
        log.write("Error: The provided data structure is not supposed for this instance");
        return reportInvalidData();
    }
    if ((stages & SaveMask::kInputProfile) != 0)
        applyInputs(data.child("inputprofile").child(0));
    if ((stages & SaveMask::kAnyNodeInfo) != 0) {
        log.write("Fetching node info tag", Log::Notice);
        const Tag& nodeInfo = data.child("nodeinfo");
        if (!nodeInfo.isEmpty() && (stages & SaveMask::kSelection) != 0) {
            applySelection(nodeInfo);
            return 0;
        }
        if (const std::int32_t code = applyToNodes(nodeInfo, stages); code != 0)
            return code;
    }
    goesDown = true;
    return 0;
}

void InstanceReference::applyInputs(const Tag& profile) {
    const std::int32_t missing = instance_->applyInputProfile(profile);
    if (missing > 0 && missing != PluginInstance::kNoProfile)
        Log(Log::Warning).write("Controls that aren't there", missing, Log::OwnLevel);
}

std::int32_t InstanceReference::applyToNodes(const Tag& nodeInfo, std::uint32_t stages) {
    if (nodeInfo.isEmpty())
        return 0;
    Log entry("Traversing detected nodes", Log::Notice);
    for (std::int32_t i = 0; i < nodeInfo.childCount(); ++i) {
        const Tag& tag = nodeInfo.child(i);
        if (!tag.hasName("node"))
            continue;
        SceneNode* const node = getOrCreateNode(*instance_, tag.attribute("name"));
        if (node == nullptr)
            continue;
        entry.write("node found in instance", node->getName(), Log::OwnLevel);
        if ((stages & SaveMask::kVisible) != 0) {
            if (tag.child("visible").value() == "false")
                node->hide();
            else if (tag.child("visible").value() == "true")
                node->show();
        }
        if ((stages & SaveMask::kParent) != 0)
            if (const std::int32_t code = applyParent(*node, tag.child("parent")); code != 0)
                return code;
    }
    return 0;
}

/// The instance that an element's attribute "external" names, this one without it; null if there
/// is none of that name.
PluginInstance* InstanceReference::findOwner(const Tag& tag) {
    const std::string external = tag.attribute("external");
    if (external.empty())
        return instance_;
    const InstanceReference* const owner = findInstance(external, true, nullptr);
    return owner != nullptr ? owner->instance_ : nullptr;
}

std::int32_t InstanceReference::applyParent(SceneNode& node, const Tag& parent) {
    Log entry("setting node parent", Log::Notice);
    if (parent.isEmpty())
        return 0;
    const std::string& name = parent.value();
    if (name.empty()) {
        node.setParent(nullptr);
        return 0;
    }
    entry.write("parent tag found", name, Log::OwnLevel);
    PluginInstance* const owner = findOwner(parent);
    if (owner == nullptr) {
        entry.write("Error: External instance name was not found", Log::Error);
        return reportInvalidData();
    }
    entry.write("external parent instance", owner->getName(), Log::OwnLevel);
    SceneNode* const parentNode = owner->createNode(name);
    if (parentNode == nullptr) {
        entry.write("Error: Unable to find node with name", name, Log::Error);
        entry.write("source", owner->getName(), Log::Error);
        return reportInvalidData();
    }
    node.setParent(parentNode);
    return 0;
}

void InstanceReference::applySelection(const Tag& nodeInfo) {
    Log entry("setting node parent", Log::Notice);
    const std::int32_t count = nodeInfo.childCount("select");
    for (std::int32_t i = 0; i < count; ++i) {
        const Tag& tag = nodeInfo.child("select", i);
        PluginInstance* const owner = findOwner(tag);
        if (owner == nullptr) {
            entry.write("external", "Error: External instance not found", Log::OwnLevel);
            continue;
        }
        entry.write("external instance", owner->getName(), Log::OwnLevel);
        SceneNode* const node = owner->createNode(tag.value());
        if (node == nullptr) {
            entry.write("Error: Unable to find node with name", tag.value(), Log::Error);
            entry.write("source", owner->getName(), Log::Error);
            continue;
        }
        if (i == 0)
            node->extend(NodeCommand::kOpenSelection, 0);
        node->select();
        if (i == count - 1)
            node->extend(NodeCommand::kCloseSelection, 0);
    }
}

} // namespace MVR
