#include "instance/plugin_instance.h"

#include "core/base/sdk/log.h"
#include "core/contract/adaptor_interface.h"
#include "core/services/core_services.h"
#include "core/services/user_dialogs.h"
#include "instance/tool_parents.h"
#include "platform/choosers.h"
#include "plugins/contract/c_mesh.h"
#include "plugins/contract/extension_ids.h"
#include "plugins/contract/tool_identity.h"
#include "plugins/libraries/plugin.h"

namespace MVR {

namespace {

/// Of the record that extension 39 gets only the second field is known here.
struct NodeDataRecord {
    std::intptr_t data;
    SceneNode* node;
};

template <class Record>
Record* pointerTo(std::intptr_t data) {
    return reinterpret_cast<Record*>(data);
}

bool isMissing(const SceneNode* node, const char* complaint) {
    if (node == nullptr)
        Log(Log::Warning).write(complaint);
    return node == nullptr;
}

std::uint32_t platformButtons(std::int32_t flags) {
    switch (flags & 0xF) {
    case 1:
        return Platform::kButtonsYesNo;
    case 2:
        return Platform::kButtonsYesNoCancel;
    case 3:
        return Platform::kButtonsOkCancel;
    }
    return Platform::kButtonsOk;
}

std::uint32_t platformIcon(std::int32_t flags) {
    switch (flags & 0xFFF0) {
    case 16:
        return Platform::kIconQuestion;
    case 32:
        return Platform::kIconError;
    case 48:
        return Platform::kIconWarning;
    }
    return 0;
}

} // namespace

std::vector<std::int32_t> PluginInstance::getExtensions() {
    return {InterfaceExtension::kAddVirtualControl, InterfaceExtension::kUnplug,
            InterfaceExtension::kNodeAtTime, InterfaceExtension::kNodeData};
}

std::intptr_t PluginInstance::extend(std::int32_t id, std::intptr_t data) {
    const bool needsData =
        id == InterfaceExtension::kAddVirtualControl || id == InterfaceExtension::kParentName ||
        id == InterfaceExtension::kMasterNodes || id == InterfaceExtension::kIdentity;
    if (needsData && data == 0) {
        Log(Log::Warning).write("Interface: Extension without data", id, Log::OwnLevel);
        return 0;
    }
    switch (id) {
    case InterfaceExtension::kNodeAtTime: {
        const auto* const record = pointerTo<NodeTimeRecord>(data);
        if (record == nullptr || record->node == nullptr)
            return 0;
        return record->node->firstExtension(record->time);
    }
    case InterfaceExtension::kNodeData: {
        const auto* const record = pointerTo<NodeDataRecord>(data);
        if (record != nullptr && record->node != nullptr)
            record->node->secondExtension(data);
        return 0;
    }
    case InterfaceExtension::kAddVirtualControl:
        return reinterpret_cast<std::intptr_t>(
            addVirtualControl(*pointerTo<VirtualControlRecord>(data)));
    case InterfaceExtension::kUnplug:
        unplug(true);
        return 0;
    case InterfaceExtension::kParentName:
        if (const PluginInstance* const parent = getParentTool(*this))
            *pointerTo<std::string>(data) = parent->getName();
        return 0;
    case InterfaceExtension::kMasterNodes:
        addMasterNodes(*this, *pointerTo<Tag>(data));
        return 0;
    case InterfaceExtension::kIdentity:
        *pointerTo<ToolIdentity>(data) = {name, plugin_->getName()};
        return 0;
    }
    Log(Log::Warning).write("Interface: Caught unhandled extension", id, Log::OwnLevel);
    return 0;
}

UniDevice::Control* PluginInstance::addVirtualControl(const VirtualControlRecord& record) {
    if (!isEnabled())
        setEnabled(true);
    return virtualControls_.add(*this, record);
}

void PluginInstance::addUndo(CUndo* object) {
    adaptor()->addUndo(object);
}

UniDevice::Property* PluginInstance::addProperty(std::string propertyName,
                                                 std::int32_t acceptedKinds,
                                                 UniDevice::Property::Factory*) {
    return inputs_.add(propertyName, acceptedKinds);
}

UniDevice::Property* PluginInstance::findProperty(std::string propertyName) {
    return getProperties().property(propertyName);
}

void PluginInstance::beginPanel() {
    panel_.getLayout().begin();
}

void PluginInstance::endPanel() {
    panel_.finish();
}

void PluginInstance::beginGroup(std::string label, std::string tooltip) {
    panel_.getLayout().beginGroup(label, tooltip);
}

void PluginInstance::endGroup() {
    panel_.getLayout().endGroup();
}

void PluginInstance::addSpinnerInt(std::string label, std::string tooltip, std::int32_t* variable,
                                   std::int32_t minimum, std::int32_t maximum, std::int32_t step,
                                   std::int32_t triggerLength, bool input, std::intptr_t,
                                   Callback* callback) {
    const std::int32_t id = panel_.getLayout().addSpinnerInt(
        label, tooltip, variable, minimum, maximum, step, triggerLength, callback);
    if (input && id != PanelLayout::kNoId)
        inputs_.addForSpinner(id, label);
}

void PluginInstance::addSpinner(std::string label, std::string tooltip, double* variable,
                                double minimum, double maximum, double step,
                                std::int32_t triggerLength, bool input, std::intptr_t,
                                Callback* callback) {
    const std::int32_t id = panel_.getLayout().addSpinner(label, tooltip, variable, minimum,
                                                          maximum, step, triggerLength, callback);
    if (input && id != PanelLayout::kNoId)
        inputs_.addForSpinner(id, label);
}

void PluginInstance::addCheck(std::string label, std::string tooltip, bool* variable,
                              Callback* callback) {
    panel_.getLayout().addCheck(label, tooltip, variable, callback);
}

void PluginInstance::addText(std::string label, std::string tooltip, std::string* variable,
                             Callback* callback) {
    panel_.getLayout().addText(label, tooltip, variable, callback);
}

CInterface::ComboUpdater* PluginInstance::addCombo(std::string label, std::string tooltip,
                                                   std::vector<std::string> choices,
                                                   std::string* variable, Callback* callback) {
    return panel_.addCombo(label, tooltip, choices, variable, callback);
}

void PluginInstance::addButton(std::string label, std::string tooltip, Callback* callback) {
    panel_.getLayout().addButton(label, tooltip, callback);
}

void PluginInstance::openConfiguration() {} // there is no dialog

void PluginInstance::updatePanel() {} // nothing shows the tool's variables

std::intptr_t PluginInstance::openInputDialog() {
    return 0;
}

std::string PluginInstance::getDataPath() {
    if (tool_.get() == nullptr ||
        !tool_.supportsExtension(ToolExtension::kDataPath)) // its last calls
        return plugin_->getUserDataFolder();
    std::string path;
    tool_.extend(ToolExtension::kDataPath, reinterpret_cast<std::intptr_t>(&path));
    return path;
}

void PluginInstance::setSaveData(const void* bytes, std::int32_t size) {
    savedBlock_.set(bytes, size);
}

std::int32_t PluginInstance::getSaveData(const void** address) {
    return savedBlock_.get(address);
}

void PluginInstance::clearSaveData() {
    savedBlock_.clear();
}

void PluginInstance::destroyNode(SceneNode* node, std::intptr_t) {
    if (isMissing(node, "Trying to destroy NULL node"))
        return;
    tool_.forgetSnapshots(*node);
    node->destroy(1);
}

SceneNode* PluginInstance::createNode(std::string nodeName) {
    return adaptor()->createNode(this, std::move(nodeName));
}

SceneNode* PluginInstance::createNode(std::string nodeName, std::intptr_t kind,
                                      std::intptr_t parent) {
    return adaptor()->createNode(this, std::move(nodeName), kind, parent);
}

SceneNode* PluginInstance::createNode(std::string nodeName, std::intptr_t kind, std::intptr_t mesh,
                                      std::intptr_t parent) {
    return adaptor()->createNode(this, std::move(nodeName), kind, mesh, parent);
}

void PluginInstance::createNode(std::string, CMesh) {}

/// Keeps `snapshot`, which a call of the tool took, until it is given back.
template <class Snapshot>
Snapshot* PluginInstance::opened(Snapshot* snapshot, SceneNode& node, OpenSnapshots::Kind kind) {
    if (OpenSnapshots* const snapshots = tool_.getSnapshots(); snapshots && snapshot != nullptr)
        snapshots->add(node, kind);
    return snapshot;
}

void PluginInstance::closing(const SceneNode* node, OpenSnapshots::Kind kind) {
    if (OpenSnapshots* const snapshots = tool_.getSnapshots(); snapshots && node != nullptr)
        snapshots->remove(*node, kind);
}

TransformSnapshot* PluginInstance::getSnapshot(SceneNode* node, double time) {
    if (isMissing(node, "Trying to acquire snapshot from NULL node"))
        return nullptr;
    return opened(node->getSnapshot(time), *node, OpenSnapshots::Kind::Transform);
}

HelperSnapshot* PluginInstance::getHelperSnapshot(SceneNode* node) {
    if (isMissing(node, "Trying to acquire helper snapshot from NULL node"))
        return nullptr;
    return opened(node->getHelperSnapshot(), *node, OpenSnapshots::Kind::Helper);
}

MeshSnapshot* PluginInstance::getMeshSnapshot(SceneNode* node, double time) {
    if (isMissing(node, "Trying to acquire mesh snapshot from NULL node"))
        return nullptr;
    return opened(node->getMeshSnapshot(time), *node, OpenSnapshots::Kind::Mesh);
}

std::intptr_t PluginInstance::getLensSnapshot(SceneNode* node, double time) {
    if (isMissing(node, "Trying to acquire lens snapshot from NULL node"))
        return 0;
    LensSnapshot* const lens = LensSnapshot::fromHandle(node->getLensSnapshot(time));
    OpenSnapshots* const snapshots = tool_.getSnapshots();
    return LensSnapshot::toHandle(
        lens != nullptr && snapshots != nullptr ? snapshots->addLens(*node, *lens) : lens);
}

std::intptr_t PluginInstance::nodeQuery1(SceneNode* node) {
    NodeQueryHandler* const handler = node != nullptr ? node->getQueryHandler() : nullptr;
    return handler != nullptr ? handler->query(node) : 0;
}

std::intptr_t PluginInstance::nodeQuery2(SceneNode* node) {
    NodeMeshHandler* const handler = node != nullptr ? node->getMeshHandler() : nullptr;
    return handler != nullptr ? handler->query(node) : 0;
}

std::intptr_t PluginInstance::nodeQuery3(SceneNode* node) {
    closing(node, OpenSnapshots::Kind::Mesh);
    NodeMeshHandler* const handler = node != nullptr ? node->getMeshHandler() : nullptr;
    return handler != nullptr ? handler->endMeshSnapshot(node) : 0;
}

std::intptr_t PluginInstance::nodeQuery4(SceneNode* node) {
    closing(node, OpenSnapshots::Kind::Helper);
    NodeMeshHandler* const handler = node != nullptr ? node->getMeshHandler() : nullptr;
    return handler != nullptr ? handler->endHelperSnapshot(node) : 0;
}

std::intptr_t PluginInstance::nodeQuery5(SceneNode* node) {
    closing(node, OpenSnapshots::Kind::Transform);
    NodeTransformHandler* const handler = node != nullptr ? node->getTransformHandler() : nullptr;
    return handler != nullptr ? handler->endSnapshot(node) : 0;
}

double PluginInstance::getTime() {
    return adaptor()->getTime();
}

double PluginInstance::getFrameRate() {
    return adaptor()->getFrameRate();
}

double PluginInstance::getFrameStep() {
    return adaptor()->getFrameStep();
}

void PluginInstance::redraw() {
    if (!services_.isRecording())
        adaptor()->redraw();
}

std::int32_t PluginInstance::messageBox(std::string text, std::string title, std::int32_t flags) {
    const std::uint32_t platformFlags = platformButtons(flags) | platformIcon(flags);
    switch (services_.getDialogs().ask(text, title, platformFlags)) {
    case Platform::kAnswerCancel:
        return 1;
    case Platform::kAnswerYes:
        return 2;
    case Platform::kAnswerNo:
        return 3;
    }
    return 0;
}

} // namespace MVR
