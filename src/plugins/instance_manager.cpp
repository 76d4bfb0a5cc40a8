#include "plugins/instance_manager.h"

#include "core/base/folders.h"
#include "core/base/sdk/log.h"
#include "core/contract/adaptor_interface.h"
#include "core/contract/core_interface.h"
#include "core/contract/setting_ids.h"
#include "core/services/core_services.h"
#include "core/services/tool_list_changes.h"
#include "instance/plugin_instance.h"
#include "platform/sdk/files.h"
#include "plugins/instance_reference.h"
#include "plugins/instance_reference_restore.h"
#include "plugins/instanciatable.h"
#include "plugins/libraries/library_manager.h"
#include "plugins/libraries/root_plugin.h"

#include <algorithm>
#include <utility>

namespace MVR {
namespace {

constexpr std::int32_t kDefaultRecentItems = 10;

} // namespace

InstanceManager::InstanceManager(CoreImplementation* core, CoreServices* services)
    : CoreSubSystem(core, services) {
    Log entry("Constructing Instance manager Core subsystem", Log::Notice);
    for (const std::string& base : {readInstallValue("path"), resolveDocumentsPath()}) {
        if (base.empty()) // never the root of the file system
            continue;
        (void)Platform::createFolder(base + "\\PRM");
        addPrmFolder(base + "\\PRM");
    }
}

InstanceManager::~InstanceManager() {
    Log entry("DeInitializing Instance manager Core subsystem", Log::Notice);
    destroyRoot();
    {
        Log lost("Searching and destroying lost plugins", Log::Notice);
        LibraryManager::instance()->destroyInstances(getCore());
    }
    Log instanciatables("Destroying instanciatables", Log::Notice);
    clearCatalogue();
}

void InstanceManager::initialize() {
    root_.reset(createByType(RootPlugin::kName, "Mirvane", false));
}

void InstanceManager::destroyRoot() {
    getServices().getToolListChanges().silence();
    const Util::Owned<InstanceReference> root = std::move(root_); // there is none from here on
}

std::vector<PluginInstance*> InstanceManager::getInstances(bool checkedOnly) const {
    std::vector<PluginInstance*> instances;
    if (root_ == nullptr)
        return instances;
    GUI::TreeNode::walk(*root_, [&](GUI::TreeNode& node) {
        if (&node != root_.get() && (!checkedOnly || node.isChecked()))
            instances.push_back(static_cast<InstanceReference&>(node).getInstance());
        return false;
    });
    return instances;
}

std::int32_t InstanceManager::getRecentCount() const {
    return static_cast<std::int32_t>(recent_.size());
}

Tag InstanceManager::getRecentEntry(std::int32_t index) const {
    return index >= 0 && index < getRecentCount() ? recent_[static_cast<std::size_t>(index)]
                                                  : Tag();
}

std::string InstanceManager::getRecentLabel(std::int32_t index) const {
    Tag wrapper = getRecentEntry(index);
    if (!wrapper.hasName("MVR")) {
        Tag inner = std::exchange(wrapper, Tag::element("MVR"));
        wrapper.addChild(std::move(inner));
    }
    std::string label;
    for (std::int32_t i = 0; i < wrapper.childCount(); ++i) {
        const Tag& tool = wrapper.child(i);
        if (!tool.hasName("MVR_Plugin"))
            continue;
        const std::string& name = tool.child("name").value();
        const std::string& shown = name.empty() ? tool.child("type").value() : name;
        if (!shown.empty())
            label += (label.empty() ? "" : ", ") + shown;
    }
    return label;
}

void InstanceManager::setRecent(const Tag& tag) {
    recent_.clear();
    if (!tag.hasName("Recent"))
        return;
    for (std::int32_t i = 0; i < tag.childCount(); ++i)
        recent_.push_back(tag.child(i));
    trimRecent();
}

Tag InstanceManager::getRecent() const {
    Tag list = Tag::element("Recent");
    for (const Tag& entry : recent_)
        list.addChild(entry);
    return list;
}

void InstanceManager::addRecent(const Tag& data) {
    recent_.erase(std::remove(recent_.begin(), recent_.end(), data), recent_.end());
    recent_.push_back(data);
    trimRecent();
}

void InstanceManager::trimRecent() {
    std::int32_t limit = kDefaultRecentItems;
    getServices().getInterface().getProperty(Setting::kRecentItems, &limit);
    while (getRecentCount() > std::max(limit, 0))
        recent_.pop_front();
}

InstanceReference* InstanceManager::createReference(PluginInstance* instance) {
    if (instance->getCore() != getCore()) {
        Log(Log::Error).write("OIP mismatch");
        return nullptr;
    }
    auto* const reference = new InstanceReference(instance);
    AdaptorInterface& adaptor = *getServices().getAdaptor();
    // The first of all is the root, which a host that undoes to the end must not lose.
    if (root_ != nullptr && adaptor.isUndoOpen())
        adaptor.addUndo(new InstanceReferenceCreateRestore(reference));
    return reference;
}

} // namespace MVR
