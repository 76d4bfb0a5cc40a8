// The user's settings.
#pragma once

#include "core/contract/setting_ids.h"
#include "core/messages/sdk/message_node.h"
#include "core/services/core_sub_system.h"
#include "core/util/sdk/dynamic_object.h"
#include "data/sdk/tag.h"

#include <cstdint>
#include <string>
#include <vector>

namespace MVR {

/// A flat list of typed properties, each known by an id. They are read from a shared file and then
/// from the user's file, which wins and is written at the end.
class SettingsManager : public Util::MessageNode, public CoreSubSystem {
public:
    class Property;
    template <class T>
    class Property_Primitive;

    /// Adds the core's own settings with their defaults.
    SettingsManager(CoreImplementation* core, CoreServices* services);
    /// Writes the user's file, then destroys the properties, last first.
    ~SettingsManager() override;

    /// Finds the files, reads them and applies the log level.
    void initialize() override;
    /// A property that is destroyed from outside leaves the list.
    void receive(Util::Message& message, bool viaBroadcast) override;

    /// Adds a property and returns its node. All files are read again, so the new property and the
    /// others get their stored values. If `id` is in use, returns the node of its property and
    /// changes nothing.
    Util::MessageNode* addProperty(std::int32_t id, double defaultValue);
    Util::MessageNode* addProperty(std::int32_t id, std::string defaultValue);
    Util::MessageNode* addProperty(std::int32_t id, std::int32_t defaultValue);
    Util::MessageNode* addProperty(std::int32_t id, bool defaultValue);
    /// `value` points to a variable of the property's type. Both return false, with nothing
    /// changed, if `id` is unknown.
    bool getProperty(std::int32_t id, void* value) const;
    bool setProperty(std::int32_t id, const void* value);

private:
    template <class T>
    Util::MessageNode* addPrimitive(std::int32_t id, T defaultValue);
    Property* find(std::int32_t id) const;
    void load();
    void loadFile(const std::string& path);
    void applyLogLevel() const;
    void save() const;

    std::string userPath_;   // read last, and written; empty without a documents folder
    std::string sharedPath_; // read first, never written; empty without an install folder
    std::vector<Util::Owned<Property>> properties_; // in the order of adding
};

} // namespace MVR
