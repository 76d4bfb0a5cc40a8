#include "plugins/instance_reference.h"

#include "core/base/sdk/log.h"
#include "core/contract/adaptor_interface.h"
#include "core/services/core_services.h"
#include "core/services/tool_list_changes.h"
#include "core/services/user_dialogs.h"
#include "data/writable_name.h"
#include "instance/plugin_instance.h"
#include "plugins/clone.h"
#include "plugins/instance_manager.h"
#include "plugins/instance_reference_restore.h"
#include "plugins/libraries/plugin.h"
#include "plugins/model/attribute_pass.h"
#include "plugins/model/elements/high_poly.h"
#include "plugins/model/model_file.h"
#include "plugins/model/node_visibility.h"
#include "plugins/model/tree_save.h"
#include "plugins/model_parts.h"

#include <algorithm>
#include <deque>
#include <optional>
#include <utility>

namespace MVR {

void InstanceReference::Watch::set(InstanceReference* target) {
    if (target_ != nullptr) {
        *link_ = next_;
        if (next_ != nullptr)
            next_->link_ = link_;
    }
    target_ = target;
    if (target_ != nullptr) {
        link_ = &target_->watches_;
        next_ = *link_;
        *link_ = this;
        if (next_ != nullptr)
            next_->link_ = &next_;
    }
}

InstanceReference::InstanceReference() = default;

InstanceReference::InstanceReference(PluginInstance* instance) : instance_(instance) {
    Log entry("Creating Instance reference", Log::Notice);
    entry.write("source", instance->getName(), Log::OwnLevel);
    instance->setReference(this);
}

/// The destruction of one reference under way, with its open entries in the log.
struct InstanceReference::Departure {
    explicit Departure(InstanceReference* leaving)
        : reference(leaving), entry("Destroying InstanceReference", Log::Notice) {
        const PluginInstance* const instance = leaving->instance_;
        entry.write("name",
                    instance != nullptr ? std::string_view(instance->name)
                                        : std::string_view("(NULL)"),
                    Log::OwnLevel);
        childrenEntry.emplace("Destroying children", Log::Notice);
    }

    /// Removes the children first, so that none has to be searched for among many later.
    bool takeChildren() {
        const auto& children = reference->getChildren();
        waiting.clear();
        waiting.reserve(children.size());
        while (!children.empty()) {
            auto* const last = static_cast<InstanceReference*>(children.back());
            reference->GUI::TreeNode::remove(last);
            waiting.emplace_back(last);
        }
        return !waiting.empty();
    }

    InstanceReference* reference;
    Log entry;
    std::optional<Log> childrenEntry;
    std::vector<Watch> waiting; // the last comes first; null: destroyed by something else
};

InstanceReference::~InstanceReference() {
    while (watches_ != nullptr)
        watches_->set(nullptr);
    std::optional<Departure> own;
    if (!isDeparting_) {
        own.emplace(this);
        destroyChildren(*own);
    }
    if (HighPoly* const highPoly = modelParts_.find<HighPoly>())
        highPoly->releaseNodes(); // of a creation that was aborted
    Log log(Log::Notice);
    log.write("Notifying parent of destruction");
    if (InstanceReference* const parent = getParentReference())
        parent->GUI::TreeNode::remove(this);
    if (PluginInstance* const instance = std::exchange(instance_, nullptr)) {
        log.write("Unregistering reference");
        log.write("target", instance->name, Log::OwnLevel);
        instance->clearReference();
    }
}

/// A loop with a stack of its own: a tree may be deeper than the machine's stack.
void InstanceReference::destroyChildren(Departure& top) {
    std::deque<Departure> open;
    Departure* current = &top;
    while (true) {
        if (!current->waiting.empty()) {
            InstanceReference* const child = current->waiting.back().get();
            current->waiting.pop_back();
            if (child != nullptr)
                current = &open.emplace_back(child);
        } else if (!current->takeChildren()) {
            current->childrenEntry.reset();
            current->reference->isDeparting_ = true;
            if (open.empty())
                return;
            delete current->reference;
            open.pop_back();
            current = open.empty() ? &top : &open.back();
        }
    }
}

CoreImplementation* InstanceReference::getCore() const {
    return instance_ != nullptr ? instance_->getCore() : nullptr;
}

CoreServices* InstanceReference::getServices() const {
    return instance_ != nullptr ? &instance_->getServices() : nullptr;
}

std::string InstanceReference::getInstanceName() const {
    if (instance_ == nullptr)
        return "(NULL)";
    return instance_->isUnderCreation() ? instance_->getNameFromData() : instance_->getName();
}

InstanceReference* InstanceReference::getParentReference() const {
    return static_cast<InstanceReference*>(getParentNode());
}

InstanceReference* InstanceReference::getChildReference(std::size_t index) const {
    return static_cast<InstanceReference*>(getChildren()[index]);
}

std::string InstanceReference::getLabel() {
    Log entry("Instance reference getting label", Log::Notice);
    if (instance_ == nullptr)
        return "(NULL)";
    const std::string plugin = instance_->getPlugin()->getName();
    entry.write("Plugin name", plugin, Log::OwnLevel);
    entry.write("Instance name", instance_->getName(), Log::OwnLevel);
    std::string label = instance_->getName() + " - " + plugin;
    entry.write("New label", label, Log::OwnLevel);
    return label;
}

std::string InstanceReference::nameInLabel(std::string text) const {
    const std::string suffix =
        instance_ != nullptr ? " - " + instance_->getPlugin()->getName() : std::string();
    const std::size_t at = text.rfind(suffix);
    if (at != std::string::npos)
        text.erase(at, suffix.size());
    return text;
}

void InstanceReference::setLabel(std::string text) {
    if (instance_ == nullptr)
        return;
    const std::string wanted = nameInLabel(std::move(text));
    if (isBlank(wanted) || wanted == instance_->getName())
        return;
    instance_->setName(wanted);
    if (inTree_)
        getServices()->getToolListChanges().note();
}

InstanceReference* InstanceReference::clone() {
    return instance_ != nullptr && getParentReference() != nullptr ? cloneTool(*this) : nullptr;
}

void InstanceReference::showMenu() {
    if (instance_ != nullptr)
        getServices()->getDialogs().openMenu(*this);
}

void InstanceReference::setInTree(bool inTree) {
    if (instance_ == nullptr || inTree_ == inTree)
        return;
    // Names change without a step of the host: another tool may have this one's by now.
    if (inTree && getServices()->getTree().getNames().isUsed(instance_->getName())) {
        Log(Log::Warning).write("Back under another name", getLabel(), Log::OwnLevel);
        instance_->setName(instance_->getName());
    }
    if (inTree && instance_->isEnabled())
        instance_->restoreDevice();
    inTree_ = inTree;
    instance_->updateNameUse();
    if (!inTree && instance_->isEnabled())
        instance_->withdrawDevice();
}

void InstanceReference::abandon() {
    setInTree(false);
    while (watches_ != nullptr) // no step of the host brings it back
        watches_->set(nullptr);
}

void InstanceReference::remove(bool deleteScene) {
    if (!inTree_ || instance_ == nullptr)
        return;
    AdaptorInterface& adaptor = *getServices()->getAdaptor();
    const ToolListChanges::Scope change(getServices()->getToolListChanges());
    struct Step {
        InstanceReference* reference;
        std::size_t childrenLeft;
    };
    std::vector<Step> open;
    const auto begin = [&](InstanceReference* reference) {
        adaptor.beginUndo("Delete Oskel Tool");
        open.push_back({reference, reference->getChildren().size()});
    };
    begin(this);
    while (!open.empty()) {
        Step& step = open.back();
        const std::size_t count = step.reference->getChildren().size();
        step.childrenLeft = std::min(step.childrenLeft, count);
        if (step.childrenLeft > 0) {
            InstanceReference* const child = step.reference->getChildReference(--step.childrenLeft);
            if (child->inTree_)
                begin(child);
            continue;
        }
        InstanceReference* const leaving = step.reference;
        open.pop_back();
        leaving->leaveTree(adaptor, deleteScene);
        adaptor.endUndo();
    }
}

/// The last step of a removal, when nothing is left below; the root stays.
void InstanceReference::leaveTree(AdaptorInterface& adaptor, bool deleteScene) {
    InstanceReference* const parent = getParentReference();
    if (parent == nullptr)
        return;
    getServices()->getToolListChanges().note();
    auto* const restore = new InstanceReferenceDeleteRestore(this);
    parent->GUI::TreeNode::remove(this);
    const Watch self(this);
    adaptor.addUndo(restore); // a host without an undo list drops it at once
    if (self.get() != nullptr)
        instance_->unplug(deleteScene);
}

InstanceReference* InstanceReference::findInstance(const std::string& name, bool lookUp,
                                                   const InstanceReference* exclude) {
    InstanceReference* found = nullptr;
    const auto hasName = [&](TreeNode& node) {
        auto& reference = static_cast<InstanceReference&>(node);
        if (reference.instance_ == nullptr || reference.getInstanceName() != name)
            return false;
        found = &reference;
        return true;
    };
    InstanceReference* from = this;
    const InstanceReference* skipped = exclude;
    while (!walk(*from, hasName, skipped) && lookUp) {
        InstanceReference* const parent = from->getParentReference();
        if (parent == nullptr || parent == skipped)
            break;
        skipped = std::exchange(from, parent);
    }
    return found;
}

void InstanceReference::collectInstances(std::vector<InstanceReference*>& list) {
    walk(
        *this,
        [&list](TreeNode& node) {
            list.push_back(static_cast<InstanceReference*>(&node));
            return false;
        });
}

std::int32_t InstanceReference::save(Tag& out, std::uint32_t mask) {
    saveTree(*this, out, mask);
    return 0;
}

bool InstanceReference::saveModelFile(const std::string& path) {
    Tag model;
    (void)save(model, SaveMask::kModel);
    return writeModelFile(path, model, &getServices()->getFaults());
}

void InstanceReference::savePrm() {
    if (instance_ == nullptr)
        return;
    UserDialogs& dialogs = getServices()->getDialogs();
    const Watch self(this); // the host may destroy the tool meanwhile
    const std::string path = dialogs.askModelToSave();
    if (path.empty() || self.get() == nullptr)
        return;
    if (saveModelFile(path))
        dialogs.ask("PRM saved successfully", "Mirvane", Platform::kButtonsOk);
    else
        dialogs.ask("Error: Unable to save to the specified file.", "Mirvane",
                    Platform::kButtonsOk | Platform::kIconError);
}

std::int32_t InstanceReference::applyAttributes(const Tag& data, std::uint32_t stages) {
    return runAttributePass(*this, data, stages);
}

void InstanceReference::loadHighPoly(const Tag& highPoly, const std::string& path,
                                     const ModelPlace& place) {
    Log entry("Loading highpoly model", Log::Notice);
    if (!highPoly.isEmpty())
        modelParts_.get<HighPoly>().merge(*getServices(), highPoly, path, place);
}

SceneNode* InstanceReference::findHighPolyNode(const std::string& name) const {
    for (const InstanceReference* each = this; each != nullptr; each = each->getParentReference())
        if (SceneNode* const node = each->modelParts_.read<HighPoly>().find(name))
            return node;
    return nullptr;
}

void InstanceReference::nameHighPolyNodes() {
    if (HighPoly* const highPoly = modelParts_.find<HighPoly>())
        highPoly->nameNodes(instance_->getName());
}

void InstanceReference::setLowPolyVisible(bool visible) {
    setOwnNodesVisible(*this, visible);
}

void InstanceReference::setHighPolyVisible(bool visible) {
    setHostNodesVisible(*this, visible);
}

} // namespace MVR
