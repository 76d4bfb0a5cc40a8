#include "core/core_implementation.h"

#include "core/base/error_codes.h"
#include "core/base/sdk/log.h"
#include "core/core_door.h"
#include "data/user_file.h"
#include "instance/plugin_instance.h"
#include "platform/windows.h"
#include "plugins/contract/model_words.h"
#include "plugins/creation.h"
#include "plugins/instance_reference.h"
#include "plugins/model/elements/unknown_elements.h"
#include "plugins/model/model_file.h"
#include "plugins/model_parts.h"
#include "unidevice/sdk/profile_managers.h"

#include <cstddef>
#include <utility>

namespace MVR {

namespace {

constexpr std::int32_t kDialogDestroyed = 20101;
constexpr const char* kRecentFile = R"(\recent.xml)";

} // namespace

CoreImplementation::CoreImplementation(AdaptorInterface* adaptor, CoreDoor& door)
    : MainDlg(this, &door), CoreInterface("CORE"), AdaptorManager(this, &door, adaptor),
      RecordManager(this, &door), InstanceManager(this, &door), UpdateManager(this, &door),
      door_(door), extensions_(door), settings_(this, &door) {
    door_.open(*this);
    Log log("Constructing CORE main system", Log::Notice);
    Hooks::addKeyCallback(this);
    CoreSubSystem::initializeAll();
    readRecent();
    buildCatalogue();
}

CoreImplementation::~CoreImplementation() {
    Log log("Deinitializing CORE main system", Log::Notice);
    Hooks::removeKeyCallback(this);
    writeRecent();
}

void CoreImplementation::readRecent() {
    Tag recent;
    const std::string folder = getUserFolder();
    // The entries before the damage in a file are kept.
    if (!folder.empty() && recent.load(folder + kRecentFile) > Tag::kNotOpened)
        Log(Log::Warning).write("Unable to read recent list", folder, Log::OwnLevel);
    setRecent(recent);
}

void CoreImplementation::writeRecent() const {
    const std::string folder = getUserFolder();
    if (!folder.empty() && !saveUserFile(getRecent(), folder + kRecentFile))
        Log(Log::Warning).write("Unable to write recent list", folder, Log::OwnLevel);
}

std::int32_t CoreImplementation::messageBox(std::intptr_t, const std::string& text,
                                            const std::string& title, std::uint32_t flags) {
    return door_.getDialogs().ask(text, title, flags);
}

std::int32_t CoreImplementation::getStartCountdown() const {
    std::int32_t seconds = 0;
    settings_.getProperty(Setting::kStartCountdown, &seconds);
    return seconds;
}

void CoreImplementation::setStartCountdown(std::int32_t seconds) {
    settings_.setProperty(Setting::kStartCountdown, &seconds);
}

std::int32_t CoreImplementation::getEndCountdown() const {
    std::int32_t seconds = 0;
    settings_.getProperty(Setting::kEndCountdown, &seconds);
    return seconds;
}

void CoreImplementation::setEndCountdown(std::int32_t seconds) {
    settings_.setProperty(Setting::kEndCountdown, &seconds);
}

bool CoreImplementation::getAutoExpand() const {
    bool autoExpand = true;
    settings_.getProperty(Setting::kAutoExpand, &autoExpand);
    return autoExpand;
}

void CoreImplementation::setAutoExpand(bool autoExpand) {
    settings_.setProperty(Setting::kAutoExpand, &autoExpand);
}

void CoreImplementation::receive(Util::Message& message, bool viaBroadcast) {
    MainDlg::receive(message, viaBroadcast);
}

Tag CoreImplementation::getConfiguration() {
    Tag configuration;
    if (getRoot() != nullptr)
        getRoot()->save(configuration, SaveMask::kScene);
    return configuration;
}

Tag CoreImplementation::getDetachedConfiguration() {
    Tag configuration = Tag::element(ModelWord::kTree);
    if (getRoot() == nullptr)
        return configuration;
    for (std::size_t index = 0; getRoot() != nullptr && index < getRoot()->getChildren().size();
         ++index) {
        const InstanceReference::Watch tool(getRoot()->getChildReference(index));
        const bool hasNode = !getAdaptor()->getNodes(tool.get()->getInstance()).empty();
        if (hasNode || tool.get() == nullptr) // the host may end tools when it is asked
            continue;
        Tag detached;
        tool.get()->save(detached, SaveMask::kDetached);
        configuration.addChild(std::move(detached));
    }
    return configuration;
}

void CoreImplementation::loadConfiguration(Tag configuration) {
    // Whoever wrote the scene could open any folder to its tools by this.
    if (const std::string folder = configuration.attribute(kModelFolder); !folder.empty()) {
        Log(Log::Warning).write("A configuration names no folder of models", folder, Log::OwnLevel);
        configuration.attributeRef(kModelFolder).clear();
    }
    if (getRoot() == nullptr) // the attachment ends
        return;
    if (configuration.hasName(ModelWord::kTree))
        UnknownElements::readTree(configuration, getRoot()->getModelParts());
    createTools(door_, std::move(configuration), nullptr, nullptr, InsertOrder::AsInData);
}

void CoreImplementation::deleteAllInstances() {
    if (getRoot() == nullptr)
        return;
    const ToolListChanges::Scope change(door_.getToolListChanges());
    if (!getRoot()->getChildren().empty())
        door_.getToolListChanges().note();
    while (getRoot() != nullptr && !getRoot()->getChildren().empty())
        getRoot()->getChildReference(getRoot()->getChildren().size() - 1)->destroy();
    if (getRoot() != nullptr)
        UnknownElements::clear(getRoot()->getModelParts());
}

std::int32_t CoreImplementation::openMainDialog(std::intptr_t parentWindow) {
    setParentWindow(parentWindow);
    if (isOpen()) {
        if (!Platform::isIconic(getWindow()))
            return reportCode(Codes::kMainDialogOpen);
        Util::Message closed(kDialogDestroyed);
        if (const std::int32_t code = send(this, closed); code != 0)
            return code;
    }
    return open(parentWindow);
}

std::int32_t CoreImplementation::closeMainDialog() {
    if (!isOpen())
        return reportCode(Codes::kMainDialogNotOpen);
    Platform::destroyWindow(getWindow());
    return 0;
}

bool CoreImplementation::isMainDialogOpen() {
    return isOpen();
}

void CoreImplementation::update(double time) {
    // A tool may delete others while it changes to the new time.
    std::vector<InstanceReference::Watch> tools;
    for (PluginInstance* instance : isRecording() ? getRecordedInstances() : getInstances(true))
        tools.emplace_back(instance->getReference());
    for (const InstanceReference::Watch& tool : tools)
        if (tool.get() != nullptr)
            tool.get()->getInstance()->timeChanged(time);
}

bool CoreImplementation::isRecording() {
    return RecordManager::isRecording();
}

void CoreImplementation::setUnlockedKeys(const std::vector<UnlockedKey>& keys) {
    Hooks::setUnlockedKeys(keys);
}

std::int32_t CoreImplementation::startRecording() {
    return RecordManager::startRecording();
}

std::int32_t CoreImplementation::stopRecording() {
    return RecordManager::stopRecording();
}

std::int32_t CoreImplementation::getSlowMotion() {
    return RecordManager::getSlowMotion();
}

void CoreImplementation::setSlowMotion(std::int32_t slowMotion) {
    RecordManager::setSlowMotion(slowMotion);
}

std::int32_t CoreImplementation::resimulate(double start, double end) {
    return RecordManager::resimulate(start, end);
}

void CoreImplementation::setInstanceChecked(std::string name, bool checked) {
    if (getRoot() == nullptr)
        return;
    if (InstanceReference* const tool = getRoot()->findInstance(name, false, nullptr))
        tool->setChecked(checked, true);
}

void CoreImplementation::setInstanceConfigProfile(std::string name, std::string profile) {
    InstanceReference* const tool =
        getRoot() != nullptr ? getRoot()->findInstance(name, false, nullptr) : nullptr;
    if (tool == nullptr)
        return;
    PluginInstance& instance = *tool->getInstance();
    if (const FileElement* const found = instance.getConfigProfiles().findElement(profile))
        instance.applyConfigProfile(found->data);
    else
        Log(Log::Warning).write("Unable to find profile", name + ": " + profile, Log::OwnLevel);
}

Util::MessageNode* CoreImplementation::addProperty(std::int32_t id, double defaultValue) {
    return settings_.addProperty(id, defaultValue);
}

Util::MessageNode* CoreImplementation::addProperty(std::int32_t id, std::string defaultValue) {
    return settings_.addProperty(id, std::move(defaultValue));
}

Util::MessageNode* CoreImplementation::addProperty(std::int32_t id, std::int32_t defaultValue) {
    return settings_.addProperty(id, defaultValue);
}

Util::MessageNode* CoreImplementation::addProperty(std::int32_t id, bool defaultValue) {
    return settings_.addProperty(id, defaultValue);
}

bool CoreImplementation::getProperty(std::int32_t id, void* value) {
    return settings_.getProperty(id, value);
}

bool CoreImplementation::setProperty(std::int32_t id, const void* value) {
    return settings_.setProperty(id, value);
}

std::intptr_t CoreImplementation::extend(std::int32_t id, std::intptr_t data) {
    return extensions_.find(id, data);
}

void CoreImplementation::onKey(std::int32_t virtualKey, bool pressed, bool ctrl, bool alt,
                               bool shift) {
    RecordManager::handleKey(virtualKey, pressed, ctrl, alt, shift);
}

} // namespace MVR
