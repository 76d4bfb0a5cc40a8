#include "instance/plugin_instance.h"

#include "core/base/sdk/log.h"
#include "core/contract/adaptor_interface.h"
#include "core/services/core_services.h"
#include "core/services/tool_list_changes.h"
#include "plugins/contract/c_camera_plugin.h"
#include "plugins/contract/extension_ids.h"
#include "plugins/instance_manager.h"
#include "plugins/instance_reference.h"
#include "plugins/libraries/plugin.h"
#include "unidevice/sdk/device_handler.h"

#include <utility>

namespace MVR {

namespace {

/// Destroys what hangs below `node`, last first, what is deeper before what it hangs on; objects
/// that a tool owns stay, with all below them.
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

} // namespace

PluginInstance::PluginInstance(CoreImplementation* core, CoreServices& services, Plugin* plugin,
                               const std::string& wanted)
    : MessageNode("PluginInstance"), plugin_(plugin), core_(core), services_(services) {
    CCameraPlugin* const descriptor = plugin->getDescriptor();
    name = services.getTree().getNames().makeUnique(wanted.empty() ? descriptor->getName() + "_01"
                                                                   : wanted);
    setDriver(UniDevice::DeviceHandler::instance()->findDriver("dummydriver"));
    CCamera::CreateParam param;
    param.name = name;
    code_.reset(CCamera::createCode(descriptor, &param));
    if (code_ != nullptr)
        code_->setInterface(this);
    plugin->addInstance(membership_);
}

PluginInstance::~PluginInstance() {
    const Log entry("Destroying PluginInstance: " + name, Log::Notice);
    destroying_ = true;
    services_.leaveTake(this, false);
    while (!comboUpdaters_.empty())
        comboUpdaters_.pop_back();
    if (reference_ != nullptr)
        reference_->destroy();
    code_.reset();
    for (SceneNode* node : adaptor()->getNodes(this))
        node->release(node); // the scene object outlives the tool
    plugin_->removeInstance(membership_);
}

AdaptorInterface* PluginInstance::adaptor() const {
    return services_.getAdaptor();
}

void PluginInstance::setName(std::string wanted) {
    std::string taken = services_.getTree().getNames().makeUnique(wanted);
    if (nameInUse_) {
        services_.getTree().getNames().remove(name);
        services_.getTree().getNames().add(taken);
    }
    name = std::move(taken);
    if (code_ != nullptr)
        code_->setName(name);
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
        for (SceneNode* node : host->getNodes(this)) {
            if (deleteScene)
                destroyPlainChildren(node);
            node->destroy(deleteScene ? 1 : 0);
        }
    }
    host->redraw();
    host->endUndo();
    if (isAlive)
        unplugging_ = false;
}

std::string PluginInstance::getPluginKey() const {
    return code_->getPlugin()->getKey();
}

std::int32_t PluginInstance::selectObject() {
    if (!code_->supportsExtension(ToolExtension::kSelectObject))
        return 0;
    return static_cast<std::int32_t>(code_->extend(ToolExtension::kSelectObject, 0));
}

Tag& PluginInstance::getCustomData(Tag& out) {
    out = Tag();
    code_->extend(ToolExtension::kGetCustomData, reinterpret_cast<std::intptr_t>(&out));
    return out;
}

void PluginInstance::setCustomData(Tag data) {
    code_->extend(ToolExtension::kSetCustomData, reinterpret_cast<std::intptr_t>(&data));
}

void PluginInstance::timeChanged(double time) {
    code_->setTime(time);
}

} // namespace MVR
