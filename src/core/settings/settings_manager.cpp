#include "core/settings/settings_manager.h"

#include "core/base/folders.h"
#include "core/base/sdk/log.h"
#include "core/contract/adaptor_interface.h"
#include "core/services/core_services.h"
#include "core/settings/settings_property.h"
#include "core/util/thread_check.h"
#include "data/user_file.h"

#include <algorithm>
#include <utility>

namespace MVR {

SettingsManager::SettingsManager(CoreImplementation* core, CoreServices* services)
    : MessageNode("SettingsManager"), CoreSubSystem(core, services) {
    Log log("Constructing Setting manager Core subsystem", Log::Notice);
    addPrimitive(Setting::kLogLevel, std::string("High"));
    addPrimitive(Setting::kSilentMode, true);
    addPrimitive(Setting::kRecentItems, 10);
    addPrimitive(Setting::kStartCountdown, 3);
    addPrimitive(Setting::kEndCountdown, 3);
    addPrimitive(Setting::kReserved, false);
    addPrimitive(Setting::kCheckUpdates, false);
    addPrimitive(Setting::kAutoExpand, true);
}

SettingsManager::~SettingsManager() {
    save();
    while (!properties_.empty()) {
        const Util::Owned<Property> last = std::move(properties_.back());
        properties_.pop_back();
    }
}

void SettingsManager::initialize() {
    const std::string userFolder = getServices().getUserFolder();
    if (!userFolder.empty())
        userPath_ = userFolder + R"(\settings.xml)";
    const std::string install = readInstallValue("path");
    if (!install.empty())
        sharedPath_ =
            install + R"(\data\)" + getServices().getAdaptor()->getName() + R"(\settings.xml)";
    load();
    applyLogLevel();
}

void SettingsManager::receive(Util::Message& message, bool) {
    if (message.id != Util::StopBroadcasting)
        return;
    const auto leaving =
        std::find_if(properties_.begin(), properties_.end(),
                     [&message](const auto& property) { return property.get() == message.sender; });
    if (leaving == properties_.end())
        return;
    static_cast<void>(leaving->release()); // it is destroying itself
    properties_.erase(leaving);
}

Util::MessageNode* SettingsManager::addProperty(std::int32_t id, double defaultValue) {
    return addPrimitive(id, defaultValue);
}

Util::MessageNode* SettingsManager::addProperty(std::int32_t id, std::string defaultValue) {
    return addPrimitive(id, std::move(defaultValue));
}

Util::MessageNode* SettingsManager::addProperty(std::int32_t id, std::int32_t defaultValue) {
    return addPrimitive(id, defaultValue);
}

Util::MessageNode* SettingsManager::addProperty(std::int32_t id, bool defaultValue) {
    return addPrimitive(id, defaultValue);
}

bool SettingsManager::getProperty(std::int32_t id, void* value) const {
    const Property* const property = find(id);
    return property != nullptr && value != nullptr && property->getValue(value);
}

bool SettingsManager::setProperty(std::int32_t id, const void* value) {
    Property* const property = find(id);
    return property != nullptr && value != nullptr && property->setValue(value);
}

template <class T>
Util::MessageNode* SettingsManager::addPrimitive(std::int32_t id, T defaultValue) {
    if (Property* const first = find(id))
        return first;
    properties_.emplace_back(new Property_Primitive<T>(id, std::move(defaultValue)));
    Property* const property = properties_.back().get();
    if (listenTo(property) != 0)
        Log(Log::Warning).write("Unable to listen to setting", id, Log::OwnLevel);
    load();
    return property;
}

SettingsManager::Property* SettingsManager::find(std::int32_t id) const {
    Util::checkHostThread();
    for (const auto& property : properties_)
        if (property->getId() == id)
            return property.get();
    return nullptr;
}

void SettingsManager::load() {
    if (!sharedPath_.empty())
        loadFile(sharedPath_);
    if (!userPath_.empty())
        loadFile(userPath_);
}

void SettingsManager::loadFile(const std::string& path) {
    Tag root;
    const std::int32_t code = root.load(path);
    if (code > Tag::kNotOpened)
        Log(Log::Warning)
            .write("Unable to read settings", path + ", those before the damage count",
                   Log::OwnLevel);
    for (std::int32_t index = 0; index < root.childCount(); ++index)
        for (const auto& property : properties_)
            if (property->fromTag(root.child(index)))
                break;
}

void SettingsManager::applyLogLevel() const {
    constexpr const char* levels[] = {"Disabled", "Low", "High", "Debug"};
    std::string level;
    getProperty(Setting::kLogLevel, &level);
    const auto found = std::find(std::begin(levels), std::end(levels), level);
    if (found != std::end(levels))
        Log::setThreshold(static_cast<std::int32_t>(found - std::begin(levels)));
}

void SettingsManager::save() const {
    if (userPath_.empty())
        return;
    Tag root = Tag::element("MVRConfig");
    for (const auto& property : properties_) {
        Tag element;
        property->toTag(element);
        root.addChild(std::move(element));
    }
    if (!saveUserFile(root, userPath_))
        Log(Log::Error).write("Unable to write settings", userPath_, Log::OwnLevel);
}

} // namespace MVR
