#include "plugins/model/tool_start.h"

#include "core/base/border.h"
#include "core/base/error_codes.h"
#include "core/contract/adaptor_interface.h"
#include "core/services/core_services.h"
#include "instance/plugin_instance.h"
#include "plugins/contract/extension_ids.h"
#include "plugins/contract/model_words.h"
#include "plugins/contract/scene_node.h"
#include "plugins/model/elements/config_profile.h"
#include "plugins/model/elements/input_profile.h"
#include "plugins/model/elements/node_info.h"
#include "plugins/model/elements/node_list.h"
#include "plugins/model/elements/saved_block.h"
#include "plugins/model/elements/table.h"
#include "unidevice/sdk/profile_managers.h"

namespace MVR {
namespace {

constexpr std::int32_t kOkWithStopIcon = 32; // flags of CInterface::messageBox()

void storeFactorySettings(PluginInstance& instance) {
    // The name is reserved for this; it is in the list only, never in a file.
    (void)instance.getConfigProfiles().addElement(instance.getConfigProfile(kFactorySettings),
                                                  false, true);
}

} // namespace

ToolStart::ToolStart(InstanceReference& reference, const Tag& data, ModelPlace& place, Log& entry)
    : reference_(&reference), data_(data), place_(place), entry_(entry),
      adaptor_(*reference.getServices()->getAdaptor()) {}

PluginInstance& ToolStart::instance() const {
    return *reference_.get()->getInstance();
}

bool ToolStart::run(std::string folder) {
    const bool isStarted =
        initialise(std::move(folder)) && (SavedBlockElement::isIn(data_) ? resume() : createNew());
    if (isStarted)
        entry_.write("create returned successfully");
    else if (!isCancelled_) // the tool removed itself
        adaptor().endUndo();
    return isStarted;
}

bool ToolStart::initialise(std::string folder) {
    Log entry("initializing plugin", Log::Notice);
    ToolObject& tool = instance().getTool();
    tool.extend(ToolExtension::kDataFolder, reinterpret_cast<std::intptr_t>(&folder));
    if (!isAlive())
        return false;
    const std::int32_t code = tool.init();
    if (code == 0) {
        entry.write("init returned successfully");
        return isAlive();
    }
    cancelStep();
    logRefusal("instance init returned error", code);
    if (isAlive()) // unless the host destroyed it with the step
        reference_.get()->destroy();
    return false;
}

bool ToolStart::createNew() {
    Log entry("creating plugin", Log::Notice);
    if (const std::int32_t code = instance().getTool().create(); code != 0) {
        logRefusal("instance create returned error", code);
        giveUp();
        return false;
    }
    if (!isAlive())
        return false;
    entry.write("Saving factory settings");
    storeFactorySettings(instance());
    entry.write("Loading default config profile");
    if (data_.child(ConfigProfileElement::kWord).isEmpty())
        if (const FileElement* const start =
                instance().getConfigProfiles().findElement(kStartProfile))
            instance().applyConfigProfile(Tag(start->data));
    if (!isAlive())
        return false;
    entry.write("Loading input config profile");
    if (data_.child(InputProfileElement::kWord).isEmpty())
        if (const FileElement* const start =
                instance().getInputProfiles().findElement(kStartProfile))
            (void)instance().applyInputProfile(start->data);
    return isAlive();
}

bool ToolStart::resume() {
    if (!bindNodes())
        return false;
    ToolLoading tool{*reference_.get(), instance(), place_, {}};
    loadElements(Moment::Resuming, tool, data_);
    Log entry("loading plugin", Log::Notice);
    if (const std::int32_t code = instance().getTool().load(); code != 0) {
        logRefusal("instance load returned error", code);
        giveUp();
        return false;
    }
    if (isAlive())
        instance().updatePanel();
    return isAlive();
}

/// Binds the scene objects that the saved tool had. Returns false if one of them is missing.
bool ToolStart::bindNodes() {
    const Tag& nodeInfo = data_.child(NodeInfoElement::kWord);
    const std::vector<std::string> names = NodeListElement::readNames(nodeInfo);
    const std::string dataName = reference_.get()->getInstanceName();
    std::vector<SceneNode*> nodes = adaptor().resolveNodes(nodeInfo, dataName, &instance());
    if (!isAlive())
        return false;
    nodes.resize(names.size());
    bool isComplete = true;
    for (std::size_t i = 0; i < names.size(); ++i) {
        if (nodes[i] != nullptr)
            continue;
        isComplete = false;
        place_.logMissing("node " + names[i], "it isn't in the scene",
                          reportCode(Codes::kNodeMissing));
    }
    if (!isComplete)
        reportMissing(nodes, names);
    for (std::size_t i = 0; i < names.size(); ++i) {
        if (nodes[i] == nullptr)
            continue;
        (void)Border::callNode(
            "bindTest",
            [&] {
                if (isComplete && isAlive() && nodes[i]->bindTest(&instance(), names[i]) != 0 &&
                    isAlive() && adaptor().createNode(&instance(), names[i]) == nullptr)
                    place_.log("node " + names[i], "the host can't make it");
            });
        (void)Border::callNode("release", [&] { nodes[i]->release(nodes[i]); });
    }
    if (!isAlive())
        return false;
    if (!isComplete)
        giveUp();
    return isComplete;
}

void ToolStart::reportMissing(const std::vector<SceneNode*>& nodes,
                              const std::vector<std::string>& names) {
    std::string message =
        "Some nodes required for this plugin was not found in the scene. Please make sure all "
        "required nodes are present.\nThe following nodes were not found:\n\n";
    for (std::size_t i = 0; i < names.size(); ++i)
        if (nodes[i] == nullptr)
            message += reference_.get()->getInstanceName() + "_" + names[i] + "\n";
    entry_.write(message, Log::Error);
    (void)instance().messageBox(message, "Error loading plugin", kOkWithStopIcon);
}

void ToolStart::cancelStep() {
    isCancelled_ = true;
    adaptor().cancelUndo();
}

/// The tool stays outside the tree, unless the host destroys it with the step.
void ToolStart::giveUp() {
    cancelStep();
    if (isAlive())
        reference_.get()->abandon();
}

void ToolStart::logRefusal(const char* text, std::int32_t code) {
    const std::string message = ErrorCode::instance()->find(code).getMessage();
    entry_.write(text, message, Log::Error);
    place_.logMissing(ModelWord::kTool, std::string(text) + ": " + message, code);
}

} // namespace MVR
