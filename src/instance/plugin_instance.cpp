#include "instance/plugin_instance.h"

#include "core/base/border.h"
#include "core/base/sdk/log.h"
#include "core/contract/adaptor_interface.h"
#include "core/services/core_services.h"
#include "core/services/take_notes.h"
#include "core/services/tool_list_changes.h"
#include "data/writable_name.h"
#include "plugins/contract/extension_ids.h"
#include "plugins/instance_manager.h"
#include "plugins/instance_reference.h"
#include "plugins/libraries/plugin.h"
#include "unidevice/sdk/device_handler.h"

#include <utility>

namespace MVR {

namespace {

/// Destroys what is below `node`, last first and children before parents; objects that a tool owns
/// stay, with all below them.
void destroyPlainChildren(SceneNode* node) {
    struct Level {
        SceneNode* node;
        std::int32_t childrenLeft;
    };
    std::vector<Level> open{{node, node->getChildCount()}};
    while (true) {
        Level& level = open.back();
        if (level.childrenLeft > 0) {
            SceneNode* const child = level.node->getChild(--level.childrenLeft);
            if (child == nullptr)
                continue;
            if (child->getOwner() != nullptr)
                level.node->release(child);
            else
                open.push_back({child, child->getChildCount()});
            continue;
        }
        if (open.size() == 1)
            return;
        level.node->destroy(1);
        open.pop_back();
    }
}

/// Returns the tool's own list if it has one, otherwise the one that it shares with its kind.
template <class List>
List& listOf(ToolObject& tool, std::int32_t extension, List& shared) {
    if (tool.get() == nullptr || !tool.supportsExtension(extension))
        return shared;
    List* const own = reinterpret_cast<List*>(tool.extend(extension, 0));
    return own != nullptr ? *own : shared;
}

} // namespace

PluginInstance::PluginInstance(CoreImplementation* core, CoreServices& services, Plugin* plugin,
                               const std::string& wanted)
    : MessageNode("PluginInstance"), plugin_(plugin), core_(core), services_(services) {
    name = services.getTree().getNames().makeUnique(isBlank(wanted) ? plugin->getName() + "_01"
                                                                    : wanted);
    setDriver(UniDevice::DeviceHandler::instance()->findDriver("dummydriver"));
    tool_.make(*this);
    plugin->addInstance(membership_);
}

PluginInstance::~PluginInstance() {
    const Log entry("Destroying PluginInstance: " + name, Log::Notice);
    destroying_ = true;
    services_.leaveTake(this, false);
    panel_.clear();
    if (reference_ != nullptr)
        reference_->destroy();
    tool_.destroy();
    forEachNode("release", [](SceneNode& node) { node.release(&node); }); // the object stays
    plugin_->removeInstance(membership_);
}

AdaptorInterface* PluginInstance::adaptor() const {
    return services_.getAdaptor();
}

/// Runs `visit`, which calls `operation`, for each scene node of the tool. The host may end the
/// tool meanwhile.
template <class Visit>
void PluginInstance::forEachNode(const char* operation, Visit visit) {
    const InstanceReference::Watch self(destroying_ ? nullptr : reference_);
    const bool mayEnd = self.get() != nullptr;
    for (SceneNode* node : adaptor()->getNodes(this)) {
        if (mayEnd && self.get() == nullptr)
            return;
        (void)Border::callNode(operation, [&] { visit(*node); });
    }
}

void PluginInstance::setName(std::string wanted) {
    if (isBlank(wanted))
        return;
    InstanceNames& names = services_.getTree().getNames();
    std::string unique = names.makeUnique(wanted);
    if (nameInUse_) {
        names.remove(name);
        names.add(unique);
    }
    name = std::move(unique);
    if (CCamera* const code = getCode())
        code->setName(name);
}

void PluginInstance::setReference(InstanceReference* reference) {
    if (reference_ != nullptr)
        Log(Log::Error).write("Trying to make reference to an already referenced instance");
    reference_ = reference;
    updateNameUse();
}

void PluginInstance::clearReference() {
    reference_ = nullptr;
    updateNameUse();
    if (!destroying_)
        destroy();
}

bool PluginInstance::isInTree() const {
    return reference_ != nullptr && reference_->isInTree();
}

void PluginInstance::updateNameUse() {
    if (nameInUse_ == isInTree())
        return;
    nameInUse_ = !nameInUse_;
    if (nameInUse_)
        services_.getTree().getNames().add(name);
    else
        services_.getTree().getNames().remove(name);
}

void PluginInstance::unplug(bool deleteScene) {
    if (unplugging_)
        return;
    unplugging_ = true;
    const ToolListChanges::Scope change(services_.getToolListChanges());
    AdaptorInterface* const host = adaptor();
    host->beginUndo("Delete plugin instance");
    services_.leaveTake(this, true); // a take goes on without it
    bool isAlive = true;
    if (reference_ != nullptr) {
        const InstanceReference::Watch reference(reference_);
        reference_->remove(deleteScene);
        isAlive = reference.get() != nullptr; // a host without undo steps frees it at once
    }
    if (isAlive) {
        forEachNode(
            "destroy",
            [&](SceneNode& node) {
                tool_.forgetSnapshots(node);
                if (deleteScene)
                    destroyPlainChildren(&node);
                node.destroy(deleteScene ? 1 : 0);
            });
    }
    host->redraw();
    host->endUndo();
    if (isAlive)
        unplugging_ = false;
}

std::string PluginInstance::getPluginKey() const {
    return plugin_->getKey();
}

std::int32_t PluginInstance::selectObject() {
    if (!tool_.supportsExtension(ToolExtension::kSelectObject))
        return 0;
    return static_cast<std::int32_t>(tool_.extend(ToolExtension::kSelectObject, 0));
}

Tag& PluginInstance::getCustomData(Tag& out) {
    tool_.extend(ToolExtension::kGetCustomData, reinterpret_cast<std::intptr_t>(&out));
    return out;
}

void PluginInstance::setCustomData(Tag data) {
    tool_.extend(ToolExtension::kSetCustomData, reinterpret_cast<std::intptr_t>(&data));
}

void PluginInstance::timeChanged(double time) {
    tool_.setTime(time);
}

ConfigProfileManager& PluginInstance::getConfigProfiles() {
    return listOf(tool_, ToolExtension::kConfigProfiles, plugin_->getConfigProfiles());
}

InputProfileManager& PluginInstance::getInputProfiles() {
    return listOf(tool_, ToolExtension::kInputProfiles, plugin_->getInputProfiles());
}

Tag PluginInstance::getConfigProfile(const std::string& profileName) const {
    return panel_.describe(profileName);
}

void PluginInstance::applyConfigProfile(const Tag& profile) {
    panel_.apply(profile);
}

Tag PluginInstance::getInputProfile(const std::string& profileName, bool isExact) {
    return inputs_.describe(profileName, isExact);
}

std::int32_t PluginInstance::applyInputProfile(const Tag& profile) {
    const std::int32_t missing = inputs_.apply(profile);
    if (missing == kNoProfile)
        return missing;
    Util::Message applied(kInputProfileApplied);
    (void)Border::call([] { return "A listener"; }, "receive", [&] { broadcast(applied); });
    return missing;
}

void PluginInstance::prepareRecording(double time, TakeSource source,
                                      const StoredInput::IsInTake& isInTake) {
    const InstanceReference::Watch self(reference_);
    isPrepared_ = true;
    tool_.resume(); // without a driver nobody calls activate()
    const bool isStarted = tool_.startRecording(time);
    // The tool may have left the tree, or ended the take: then it has no part in the rest.
    if (self.get() == nullptr || !isInTree() || !isPrepared_)
        return;
    if (isStarted)
        forEachNode("startRecording", [time](SceneNode& node) { node.startRecording(time); });
    if (self.get() == nullptr)
        return;
    storedInput_.begin(time, source, isInTake, *adaptor());
}

void PluginInstance::holdInput(double time) {
    for (const UniDevice::Property* property : storedInput_.hold(time)) {
        const std::string text = "the input " + property->name + " of " + name +
                                 " got a value that isn't a number; the one before it stayed";
        Log(Log::Error).write(text);
        services_.getTakeNotes().add({CoreTakeNote::kBadValue, name, property->name, 0, text});
    }
}

void PluginInstance::step(double time) {
    if (!tool_.isSittingOut())
        tool_.record(time);
}

void PluginInstance::finishRecording(double time) {
    if (!std::exchange(isPrepared_, false)) // never started, or being finished
        return;
    const InstanceReference::Watch self(reference_);
    tool_.finishRecording(time);
    if (self.get() != nullptr) // the tool may be gone
        storedInput_.end();
}

std::int32_t PluginInstance::controlCount() const {
    return virtualControls_.count();
}

UniDevice::Control* PluginInstance::control(std::int32_t index) {
    return virtualControls_.at(index);
}

bool PluginInstance::update(std::int32_t) {
    if (virtualControls_.count() == 0 || tool_.get() == nullptr)
        return true;
    const InstanceReference::Watch self(reference_);
    for (std::int32_t i = 0; !tool_.isSittingOut() && i < virtualControls_.count(); ++i) {
        tool_.extend(ToolExtension::kVirtualControl,
                     reinterpret_cast<std::intptr_t>(virtualControls_.at(i)));
        if (self.get() == nullptr) // the tool has removed itself
            break;
    }
    return true;
}

/// A take begins or ends, in which each tool has a part again.
bool PluginInstance::activate(std::int32_t) {
    tool_.resume();
    return true;
}

bool PluginInstance::deactivate(std::int32_t) {
    tool_.resume();
    return true;
}

UniDevice::Control* PluginInstance::detectControl(const std::vector<UniDevice::Control*>*, void*) {
    return nullptr;
}

} // namespace MVR
