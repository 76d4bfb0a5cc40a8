#include "plugins/instance_reference.h"

#include "core/base/error_codes.h"
#include "core/base/sdk/log.h"
#include "core/contract/adaptor_interface.h"
#include "core/services/core_services.h"
#include "data/sdk/base64_buffer.h"
#include "instance/plugin_instance.h"
#include "plugins/contract/c_mesh.h"
#include "plugins/contract/extension_ids.h"
#include "plugins/contract/scene_node.h"
#include "plugins/model/instance_index.h"
#include "plugins/model/model_place.h"
#include "plugins/model/node_attributes.h"

#include <cstddef>
#include <deque>
#include <string_view>
#include <unordered_map>
#include <utility>

namespace MVR {
namespace {

std::int32_t reportInvalidData() {
    return reportCode(Codes::kInvalidData);
}

/// The node of this name, made if the scene doesn't have it; null if the host can't.
SceneNode* getOrCreateNode(PluginInstance& instance, const std::string& name) {
    if (SceneNode* const node = instance.createNode(name))
        return node;
    CMesh mesh;
    return instance.createNode(name, 0, reinterpret_cast<std::intptr_t>(&mesh), 0);
}

} // namespace

/// One call of applyAttributes().
class InstanceReference::AttributePass {
public:
    AttributePass(InstanceReference& start, const Tag& data, std::uint32_t stages)
        : data_(data), stages_(stages), index_(start), place_(data, data.attribute("path")) {}

    std::int32_t run(InstanceReference& start);

private:
    /// A reference under way, with its open entry in the log.
    struct Level {
        Level(InstanceReference* passed, const Tag& tag, std::uint32_t stages)
            : reference(passed), data(tag),
              entry("Setting object attributes for " + passed->getInstanceName(), Log::Notice) {
            entry.write("flags", static_cast<std::int32_t>(stages), Log::OwnLevel);
        }
        const Tag* find(const InstanceReference& child);

        Watch reference; // a tool may end on the way
        const Tag& data;
        Log entry;
        std::size_t nextChild = 0;
        std::unordered_map<std::string_view, const Tag*> byName;
    };

    std::int32_t begin(InstanceReference& reference, const Tag& tag);
    [[nodiscard]] bool has(std::uint32_t stages) const { return (stages_ & stages) != 0; }
    void applyRecordedValues(const Tag& values);
    void applyInputs(const Tag& profile);
    void applyNodes(const Tag& nodeInfo);
    void applyNode(const Tag& tag);
    void applyParent(SceneNode& node, const Tag& parent);
    void applyHighPolyNames(SceneNode& node, const Tag& tag);
    void applySelection(const Tag& nodeInfo);
    InstanceReference* findOwner(const Tag& tag);
    [[nodiscard]] SceneNode* findNode(InstanceReference& owner, const std::string& name,
                                      const std::string& element, Log& entry) const;

    const Tag& data_;
    std::uint32_t stages_;
    InstanceIndex index_;
    ModelPlace place_;
    std::deque<Level> open_; // not the machine's stack, which a deep tree could exhaust
    // Of the reference under way.
    InstanceReference* reference_ = nullptr;
    PluginInstance* instance_ = nullptr;
    std::int32_t code_ = 0;
    std::map<std::string, std::vector<Tag>> nodeTags_;
};

/// The data of a child: the first "MVR_Plugin" of its name; null if there is none.
const Tag* InstanceReference::AttributePass::Level::find(const InstanceReference& child) {
    if (byName.empty())
        for (std::int32_t i = 0; i < data.childCount(); ++i)
            if (data.child(i).hasName("MVR_Plugin"))
                byName.emplace(data.child(i).child("name").value(), &data.child(i));
    const auto found = byName.find(child.getInstanceName());
    return found != byName.end() ? found->second : nullptr;
}

std::int32_t InstanceReference::applyAttributes(const Tag& data, std::uint32_t stages) {
    return AttributePass(*this, data, stages).run(*this);
}

std::int32_t InstanceReference::AttributePass::run(InstanceReference& start) {
    const std::int32_t result = begin(start, data_);
    while (!open_.empty()) {
        Level& level = open_.back();
        InstanceReference* const reference = level.reference.get();
        if (reference == nullptr || level.nextChild >= reference->getChildren().size()) {
            open_.pop_back();
            continue;
        }
        InstanceReference* const child = reference->getChildReference(level.nextChild++);
        const Tag* const tag = level.find(*child);
        if (tag == nullptr)
            continue;
        if (data_.hasName("MVR") && open_.size() == 1) // each of these is a model of its own
            place_ = ModelPlace(*tag, data_.attribute("path"));
        (void)begin(*child, *tag); // a failure further down stops nothing
    }
    return result;
}

/// What `tag` holds of this tool itself; those below come next, unless they are left out.
std::int32_t InstanceReference::AttributePass::begin(InstanceReference& reference, const Tag& tag) {
    Level& level = open_.emplace_back(&reference, tag, stages_);
    reference_ = &reference;
    instance_ = reference.instance_;
    code_ = 0;
    if (tag.hasName("MVR") || instance_ == nullptr)
        return 0;
    Log log(Log::Error);
    const bool isTool = tag.hasName("MVR_Plugin");
    if (!isTool || tag.child("name").value() != reference.getInstanceName()) {
        log.write(isTool ? "Error: The provided data structure is not supposed for this instance"
                         : "Error: The provided data structure is not a MVR_Plugin tag");
        open_.pop_back();
        return reportInvalidData();
    }
    place_.setTool(reference.getInstanceName());
    if (has(SaveMask::kRecordedValues))
        applyRecordedValues(tag.child("recordedinputvalues"));
    if (has(SaveMask::kConfigProfile))
        if (const Tag& profile = tag.child("configprofile").child(0); !profile.isEmpty())
            instance_->applyConfigProfile(profile);
    if (has(SaveMask::kInputProfile) && level.reference.get() != nullptr)
        applyInputs(tag.child("inputprofile").child(0));
    if (!has(SaveMask::kAnyNodeInfo) || level.reference.get() == nullptr)
        return 0;
    log.write("Fetching node info tag", Log::Notice);
    const Tag& nodeInfo = tag.child("nodeinfo");
    if (nodeInfo.isEmpty())
        return 0;
    if (has(SaveMask::kSelection)) {
        applySelection(nodeInfo);
        open_.pop_back();
        return 0;
    }
    applyNodes(nodeInfo);
    return code_;
}

void InstanceReference::AttributePass::applyRecordedValues(const Tag& values) {
    if (values.isEmpty())
        return;
    PluginInstance::RecordedValues& recorded = instance_->getRecordedValues();
    recorded.resize(static_cast<std::size_t>(values.childCount("input")));
    std::size_t index = 0;
    for (std::int32_t i = 0; i < values.childCount(); ++i) {
        if (!values.child(i).hasName("input"))
            continue;
        const Base64Buffer block(values.child(i).value());
        if (!recorded[index].readData(block.data(), block.size()))
            place_.log("recorded input " + std::to_string(index), "its values can't be read");
        ++index;
    }
}

void InstanceReference::AttributePass::applyInputs(const Tag& profile) {
    const std::int32_t missing = instance_->applyInputProfile(profile);
    if (missing > 0 && missing != PluginInstance::kNoProfile)
        place_.log("inputprofile", "controls that aren't there: " + std::to_string(missing));
}

void InstanceReference::AttributePass::applyNodes(const Tag& nodeInfo) {
    Log entry("Traversing detected nodes", Log::Notice);
    nodeTags_.clear();
    for (std::int32_t i = 0; i < nodeInfo.childCount(); ++i)
        if (nodeInfo.child(i).hasName("node"))
            applyNode(nodeInfo.child(i));
    reference_->nodeTags_ = std::move(nodeTags_);
}

void InstanceReference::AttributePass::applyNode(const Tag& tag) {
    const std::string name = tag.attribute("name");
    SceneNode* const node = getOrCreateNode(*instance_, name);
    if (node == nullptr)
        return place_.log("node " + name, "the host can't make it");
    Log(Log::Notice).write("node found in instance", node->getName(), Log::OwnLevel);
    NodeAttributes attributes(*instance_, *node);
    if (has(SaveMask::kVisible))
        attributes.applyVisibility(tag.child("visible"));
    if (has(SaveMask::kTransform))
        attributes.applyTransform(tag.child("transform"), place_);
    if (has(SaveMask::kParent))
        applyParent(*node, tag.child("parent"));
    if (has(SaveMask::kHighPoly))
        applyHighPolyNames(*node, tag);
    if (has(SaveMask::kMesh))
        attributes.applyMesh(tag.child("CMesh"), place_);
}

/// The tool that an element's attribute "external" names, this one without it; null if there is
/// none of that name.
InstanceReference* InstanceReference::AttributePass::findOwner(const Tag& tag) {
    const std::string external = tag.attribute("external");
    if (external.empty())
        return reference_;
    InstanceReference* const owner = index_.find(*reference_, external);
    if (owner == nullptr || owner->instance_ == nullptr) {
        place_.log(tag.name() + " " + tag.value(), "there is no tool " + external);
        return nullptr;
    }
    return owner;
}

SceneNode* InstanceReference::AttributePass::findNode(InstanceReference& owner,
                                                      const std::string& name,
                                                      const std::string& element,
                                                      Log& entry) const {
    SceneNode* const node = owner.instance_->createNode(name);
    if (node != nullptr)
        return node;
    entry.write("Error: Unable to find node with name", name, Log::Error);
    entry.write("source", owner.instance_->getName(), Log::Error);
    place_.log(element, "the tool " + owner.getInstanceName() + " has no node " + name);
    return nullptr;
}

void InstanceReference::AttributePass::applyParent(SceneNode& node, const Tag& parent) {
    Log entry("setting node parent", Log::Notice);
    if (parent.isEmpty())
        return;
    const std::string& name = parent.value();
    if (name.empty())
        return node.setParent(nullptr);
    entry.write("parent tag found", name, Log::OwnLevel);
    InstanceReference* const owner = findOwner(parent);
    if (owner == nullptr) {
        entry.write("Error: External instance name was not found", Log::Error);
        code_ = reportInvalidData();
        return;
    }
    entry.write("external parent instance", owner->instance_->getName(), Log::OwnLevel);
    const std::string element = "parent of node " + node.getName();
    SceneNode* const parentNode = findNode(*owner, name, element, entry);
    if (parentNode == nullptr)
        code_ = reportInvalidData();
    else if (!NodeAttributes(*instance_, node).hangBelow(*parentNode))
        place_.log(element, "the node " + name + " hangs below it");
}

void InstanceReference::AttributePass::applyHighPolyNames(SceneNode& node, const Tag& tag) {
    for (std::int32_t i = 0; i < tag.childCount(); ++i) {
        const Tag& entry = tag.child(i);
        if (!entry.hasName("hpnode"))
            continue;
        nodeTags_[node.getName()].push_back(entry);
        node.getHighPolyNames().push_back(entry.value());
        SceneNode* const highPoly = reference_->findHighPolyNode(entry.value());
        if (highPoly == nullptr)
            continue;
        instance_->getServices().getAdaptor()->redraw();
        Log(Log::Notice).write("Parenting " + highPoly->getName() + " to " + node.getName());
        if (!NodeAttributes(*instance_, *highPoly).hangBelow(node))
            place_.log("hpnode of node " + node.getName(),
                       "the node hangs below " + highPoly->getName());
    }
}

void InstanceReference::AttributePass::applySelection(const Tag& nodeInfo) {
    Log entry("setting node parent", Log::Notice);
    reference_->selection_.clear();
    reference_->selectTags_.clear();
    std::vector<const Tag*> selected;
    for (std::int32_t i = 0; i < nodeInfo.childCount(); ++i)
        if (nodeInfo.child(i).hasName("select"))
            selected.push_back(&nodeInfo.child(i));
    for (const Tag* tag : selected) {
        reference_->selectTags_.push_back(*tag);
        InstanceReference* const owner = findOwner(*tag);
        if (owner == nullptr) {
            entry.write("external", "Error: External instance not found", Log::OwnLevel);
            continue;
        }
        entry.write("external instance", owner->instance_->getName(), Log::OwnLevel);
        SceneNode* const node = findNode(*owner, tag->value(), "select", entry);
        if (node == nullptr)
            continue;
        if (tag == selected.front())
            node->extend(NodeCommand::kOpenSelection, 0);
        node->select();
        if (tag == selected.back())
            node->extend(NodeCommand::kCloseSelection, 0);
        reference_->addToSelection(*owner, node->getName());
    }
}

void InstanceReference::addToSelection(InstanceReference& owner, const std::string& node) {
    for (SelectionGroup& group : selection_)
        if (group.owner.get() == &owner)
            return group.nodes.push_back(node);
    selection_.push_back({Watch(&owner), {node}});
}

} // namespace MVR
