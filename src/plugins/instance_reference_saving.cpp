#include "plugins/instance_reference.h"

#include "core/base/sdk/log.h"
#include "core/contract/adaptor_interface.h"
#include "core/services/core_services.h"
#include "core/services/user_dialogs.h"
#include "data/base64_codec.h"
#include "data/sdk/packed_tag.h"
#include "instance/plugin_instance.h"
#include "plugins/contract/scene_node.h"
#include "plugins/libraries/plugin.h"
#include "plugins/libraries/root_plugin.h"
#include "plugins/model/model_file.h"
#include "plugins/model/node_attributes.h"

#include <algorithm>
#include <cstddef>
#include <deque>
#include <utility>

namespace MVR {
namespace {

constexpr const char* kModelTool = "PRM"; // the kind of tool that a model's selection is saved with

Tag blockElement(const char* name, const void* bytes, std::size_t size) {
    Base64Writer text(size);
    text.append(bytes, size);
    Tag element = Tag::element(name);
    Tag value = Tag::textNode("");
    value.setName("") = text.finish(); // moved: a scene holds many, and large ones
    element.addChild(std::move(value));
    return element;
}

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

Tag saveRecordedValues(PluginInstance& instance) {
    Tag list = Tag::element("recordedinputvalues");
    std::string bytes;
    for (const Util::AVar_Linear<double>& values : instance.getRecordedValues()) {
        bytes.resize(values.getDataSize());
        values.writeData(bytes.data(), bytes.size());
        list.addChild(blockElement("input", bytes.data(), bytes.size()));
    }
    return list;
}

} // namespace

/// The writing of one tool under way, with its open entry in the log.
class InstanceReference::TreeSave {
public:
    TreeSave(InstanceReference* reference, std::uint32_t mask)
        : saved_(reference), entry_("Creating configuration file", Log::Notice) {
        entry_.write("instance", reference->getLabel(), Log::OwnLevel);
        reference->saveThis(own_, mask);
    }

    /// Puts what was written of this tool itself behind its elder siblings; false if there is
    /// nothing to write.
    bool moveTo(TreeSave& parent) {
        if (own_.isEmpty())
            return false;
        out_ = &parent.out_->addChild(std::move(own_));
        return true;
    }
    void moveTo(Tag& out) {
        out = std::move(own_);
        out_ = &out;
    }

    InstanceReference* nextChild() {
        InstanceReference* const reference = saved_.get(); // a tool may end on the way
        if (reference == nullptr || next_ >= reference->getChildren().size())
            return nullptr;
        return reference->getChildReference(next_++);
    }

private:
    Watch saved_;
    Log entry_;
    Tag own_;
    Tag* out_ = nullptr;
    std::size_t next_ = 0;
};

bool InstanceReference::saveModelFile(const std::string& path) {
    Tag model;
    (void)save(model, SaveMask::kModel);
    return writeModelFile(path, model);
}

void InstanceReference::savePrm() {
    if (instance_ == nullptr)
        return;
    UserDialogs& dialogs = getServices()->getDialogs();
    const Watch self(this); // the host may take the tool away meanwhile
    const std::string path = dialogs.askModelToSave();
    if (path.empty() || self.get() == nullptr)
        return;
    if (saveModelFile(path))
        dialogs.ask("PRM saved successfully", "Mirvane", Platform::kButtonsOk);
    else
        dialogs.ask("Error: Unable to save to the specified file.", "Mirvane",
                    Platform::kButtonsOk | Platform::kIconError);
}

std::int32_t InstanceReference::save(Tag& out, std::uint32_t mask) {
    std::deque<TreeSave> open; // not the machine's stack, which a deep tree could exhaust
    open.emplace_back(this, mask).moveTo(out);
    while ((mask & SaveMask::kNoChildren) == 0 && !open.empty()) {
        TreeSave& parent = open.back();
        InstanceReference* const child = parent.nextChild();
        if (child == nullptr || !open.emplace_back(child, mask).moveTo(parent))
            open.pop_back();
    }
    if ((mask & SaveMask::kPacked) != 0 && out.hasName("MVR_Plugin"))
        out = packTag(out, "MVR_Plugin");
    return 0;
}

/// This tool without those below it; nothing if it goes away on the way.
void InstanceReference::saveThis(Tag& out, std::uint32_t mask) {
    if (instance_ == nullptr)
        return;
    if (instance_->getPlugin()->getName() == RootPlugin::kName) {
        Log(Log::Notice).write("Creating MVR tag");
        out = Tag::element("MVR");
        return;
    }
    Tag tag = Tag::element("MVR_Plugin");
    saveStates(tag);
    const Watch self(this);
    if ((mask & SaveMask::kCustomData) != 0) {
        Tag customData;
        tag.addChild(instance_->getCustomData(customData));
        if (self.get() == nullptr)
            return;
    }
    if ((mask & SaveMask::kHighPoly) != 0)
        tag.addChild(highPolyTag_);
    if ((mask & SaveMask::kConfigProfile) != 0)
        tag.addChild(Tag::element("configprofile")).addChild(instance_->getConfigProfile(""));
    if ((mask & SaveMask::kInputProfile) != 0)
        tag.addChild(Tag::element("inputprofile"))
            .addChild(instance_->getInputProfile("", (mask & SaveMask::kExact) != 0));
    if ((mask & SaveMask::kAnyNodeInfo) != 0)
        tag.addChild(saveNodes(mask));
    if (saveBlocks(tag, mask))
        out = std::move(tag);
}

void InstanceReference::saveStates(Tag& out) {
    out.attributeRef("version") = kToolDataVersion;
    out.addChild(Tag::element("type", instance_->getPlugin()->getName()));
    out.addChild(Tag::element("name", instance_->getName()));
    if (!isShown())
        out.addChild(Tag::element("visible", "false"));
    if (!isExpanded())
        out.addChild(Tag::element("expanded", "false"));
    if (!isChecked())
        out.addChild(Tag::element("checked", "false"));
}

/// The binary blocks; false if the tool went away when it was asked for its own.
bool InstanceReference::saveBlocks(Tag& out, std::uint32_t mask) {
    if ((mask & SaveMask::kSavedBlock) != 0) {
        const Watch self(this);
        const std::int32_t code = instance_->getCode()->save();
        if (self.get() == nullptr)
            return false;
        const void* bytes = nullptr;
        const std::int32_t size = instance_->getSaveData(&bytes);
        if (code == 0)
            out.addChild(blockElement("savedata", bytes, static_cast<std::size_t>(size)));
    }
    if ((mask & SaveMask::kRecordedValues) != 0)
        out.addChild(saveRecordedValues(*instance_));
    return true;
}

Tag InstanceReference::saveNodes(std::uint32_t mask) {
    Log entry("Creating node tag", Log::Notice);
    Tag nodeInfo = Tag::element("nodeinfo");
    for (SceneNode* node : getServices()->getAdaptor()->getNodes(instance_)) {
        Tag& tag = nodeInfo.addChild(Tag::element("node"));
        tag.attributeRef("name") = node->getName();
        NodeAttributes attributes(*instance_, *node);
        if ((mask & SaveMask::kTransform) != 0)
            tag.addChild(attributes.saveTransform());
        if ((mask & SaveMask::kParent) != 0)
            tag.addChild(saveParent(*node, *instance_));
        if ((mask & SaveMask::kVisible) != 0)
            tag.addChild(attributes.saveVisibility());
        if ((mask & SaveMask::kMesh) != 0)
            tag.addChild(attributes.saveMesh());
        if ((mask & SaveMask::kHighPoly) != 0)
            saveHighPolyNames(*node, tag);
    }
    if ((mask & SaveMask::kSelection) != 0 && instance_->getPlugin()->getName() == kModelTool)
        saveSelection(nodeInfo);
    return nodeInfo;
}

void InstanceReference::saveHighPolyNames(SceneNode& node, Tag& out) const {
    bool hasName = false;
    for (const std::string& name : node.getHighPolyNames()) {
        if (name.empty())
            continue;
        out.addChild(Tag::element("hpnode", name));
        hasName = true;
    }
    const auto loaded = nodeTags_.find(node.getName());
    if (hasName || loaded == nodeTags_.end())
        return;
    for (const Tag& tag : loaded->second)
        out.addChild(tag);
}

void InstanceReference::saveSelection(Tag& nodeInfo) {
    for (const SelectionGroup& group : selection_) {
        const InstanceReference* const owner = group.owner.get();
        if (owner == nullptr)
            continue;
        for (const std::string& node : group.nodes) {
            Tag& tag = nodeInfo.addChild(Tag::element("select", node));
            tag.attributeRef("external") = owner == this ? "" : owner->getInstance()->getName();
        }
    }
    if (selection_.empty()) // nothing of it was there when it was read
        for (const Tag& tag : selectTags_)
            nodeInfo.addChild(tag);
}

} // namespace MVR
