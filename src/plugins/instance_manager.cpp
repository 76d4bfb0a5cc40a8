#include "plugins/instance_manager.h"

#include "core/base/folders.h"
#include "core/base/sdk/log.h"
#include "core/contract/adaptor_interface.h"
#include "core/services/core_services.h"
#include "core/services/tool_list_changes.h"
#include "instance/plugin_instance.h"
#include "platform/sdk/files.h"
#include "plugins/catalogue.h"
#include "plugins/contract/model_words.h"
#include "plugins/creation.h"
#include "plugins/instance_reference.h"
#include "plugins/instance_reference_restore.h"
#include "plugins/libraries/library_manager.h"
#include "plugins/libraries/plugin.h"
#include "plugins/libraries/root_plugin.h"
#include "recording/order/run_order.h"
#include "unidevice/dummy_driver.h"
#include "unidevice/sdk/device_handler.h"

#include <algorithm>
#include <cstddef>
#include <utility>

namespace MVR {

InstanceManager::InstanceManager(CoreImplementation* core, CoreServices* services)
    : CoreSubSystem(core, services), catalogue_(std::make_unique<Catalogue>(*this)),
      recent_(getServices()), control_(getServices()) {
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
    catalogue_->clear();
}

void InstanceManager::initialize() {
    root_.reset(createByType(RootPlugin::kName, "Mirvane", false));
}

void InstanceManager::destroyRoot() {
    getServices().getToolListChanges().silence();
    const Util::Owned<InstanceReference> root = std::move(root_); // there is none from now on
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

std::vector<PluginInstance*>
InstanceManager::sortForRecording(const std::vector<PluginInstance*>& instances) {
    const std::vector<CInterface*> tools(instances.begin(), instances.end());
    std::vector<InstanceReference::Watch> watches;
    for (const PluginInstance* instance : instances)
        watches.emplace_back(instance->getReference());
    const auto isThere = [&watches](std::size_t index) { return watches[index].get() != nullptr; };
    const auto nameOf = [&](std::size_t index) { return instances[index]->getName(); };
    std::vector<PluginInstance*> sorted;
    for (const std::size_t index :
         findRunOrder(*getServices().getAdaptor(), tools, nameOf, isThere))
        if (isThere(index))
            sorted.push_back(instances[index]);
    return sorted;
}

void InstanceManager::orderDevices() {
    auto* const driver = static_cast<UniDevice::DummyDriver*>(
        UniDevice::DeviceHandler::instance()->findDriver(UniDevice::DummyDriver::kName));
    const std::uint64_t revision = getServices().getToolListChanges().getRevision();
    if (driver == nullptr || (driver->isOrdered() && orderedRevision_ == revision))
        return;
    orderedRevision_ = revision;
    const std::vector<PluginInstance*> tools = getInstances(false);
    driver->pollLast(std::vector<UniDevice::Device*>(tools.begin(), tools.end()));
}

std::int32_t InstanceManager::getCatalogueSize() const {
    return catalogue_->size();
}

InstanceManager::Instanciatable* InstanceManager::getCatalogueEntry(std::int32_t index) const {
    return catalogue_->getEntry(index);
}

void InstanceManager::buildCatalogue() {
    catalogue_->build();
}

void InstanceManager::addPrmFolder(const std::string& path) {
    catalogue_->addFolder(path);
}

Tag InstanceManager::describeCatalogue() const {
    return catalogue_->describe();
}

InstanceReference* InstanceManager::create(Tag data, InstanceReference* parent, bool addToRecent) {
    return createTools(getServices(), std::move(data), parent, addToRecent ? &recent_ : nullptr)
        .first;
}

InstanceReference* InstanceManager::createByType(const std::string& type, const std::string& name,
                                                 bool addToRecent) {
    Tag data = Plugin::makeData(type);
    data.addChild(Tag::element(ModelWord::kName, name));
    return create(std::move(data), nullptr, addToRecent);
}

std::int32_t InstanceManager::createFromFile(const std::string& path, InstanceReference* parent) {
    return createFromModel(getServices(), path, parent, recent_);
}

void InstanceManager::relocate(InstanceReference* dragged, InstanceReference* target) {
    if (!dragged->isInTree() || !target->isInTree())
        return;
    for (const InstanceReference* each = target; each != nullptr; each = each->getParentReference())
        if (each == dragged)
            return;
    const ToolListChanges::Scope change(getServices().getToolListChanges());
    AdaptorInterface& adaptor = *getServices().getAdaptor();
    adaptor.beginUndo("Relocate Oskel Node");
    adaptor.addUndo(new InstanceReferenceMoveRestore(dragged));
    target->add(dragged);
    adaptor.endUndo();
    getServices().getToolListChanges().note();
}

InstanceReference* InstanceManager::createReference(PluginInstance* instance) {
    if (instance->getCore() != getCore()) {
        Log(Log::Error).write("OIP mismatch");
        return nullptr;
    }
    auto* const reference = new InstanceReference(instance);
    AdaptorInterface& adaptor = *getServices().getAdaptor();
    // The first one is the root, which a host that undoes everything must not lose.
    if (root_ != nullptr && adaptor.isUndoOpen())
        adaptor.addUndo(new InstanceReferenceCreateRestore(reference));
    return reference;
}

} // namespace MVR
