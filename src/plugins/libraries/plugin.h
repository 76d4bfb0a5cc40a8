// The core's side of one kind of tool.
#pragma once

#include "core/messages/sdk/message_node.h"
#include "core/util/sdk/dynamic_object.h"
#include "data/sdk/tag.h"
#include "plugins/contract/c_camera_plugin.h"
#include "unidevice/sdk/profile_managers.h"

#include <cstddef>
#include <cstdint>
#include <string>
#include <vector>

namespace MVR {

class CoreImplementation;
class Library;
class PluginInstance;
class PluginMember;

/// One kind of tool: owns its descriptor, creates its folders, keeps the presets that its instances
/// share, and makes and keeps the instances. It lives as long as its library; its instances belong
/// to one attachment each. Host thread only.
class Plugin final : public Util::DynamicObject, public Util::MessageNode {
public:
    /// Makes a plug-in of `library`, which owns it; it owns `descriptor`. If one of them is null,
    /// returns null, with the code of "PLUGIN_NOPARENTLIBRARY" or "PLUGIN_NOHANDLER" in `error`,
    /// and the caller keeps `descriptor`; so too, with "EXCEPTION", if that throws when asked for
    /// its name. On success `error` stays as it is.
    static Plugin* create(Library* library, CCameraPlugin* descriptor, std::int32_t& error);
    /// Destroys the instances, last first, removes itself from the library and frees the
    /// descriptor.
    ~Plugin() override;

    /// Returns the type name, which is the descriptor's.
    [[nodiscard]] std::string getName() const override { return name_; }
    /// For making tool objects; what else the descriptor tells, the operations below ask of it.
    [[nodiscard]] CCameraPlugin* getDescriptor() const { return descriptor_; }

    // What the descriptor answers; empty if it throws.
    [[nodiscard]] std::string getKey() const;
    [[nodiscard]] std::string getDescription() const;
    [[nodiscard]] std::string getAuthor() const;
    [[nodiscard]] std::string getAbout() const;
    [[nodiscard]] std::string getVersionText() const;
    /// Returns the type names that saved data may still use.
    [[nodiscard]] std::vector<std::string> getOldNames() const;
    /// Returns true if the user isn't offered the tool.
    [[nodiscard]] bool isInternal() const;
    [[nodiscard]] const Library& getLibrary() const { return *library_; }

    [[nodiscard]] std::int32_t getInstanceCount() const { return instanceCount_; }
    /// The instances are in order of creation. Returns null if `index` is out of range.
    [[nodiscard]] PluginInstance* getInstance(std::int32_t index) const;
    /// The same as its entry in the list.
    [[nodiscard]] PluginMember* getMember(std::int32_t index) const;
    /// For PluginInstance's constructor and destructor. Adding one again does nothing, and neither
    /// does removing one that isn't here.
    void addInstance(PluginMember& instance);
    void removeInstance(PluginMember& instance);
    /// Makes a tool in `core`; the plug-in owns it until a reference does. With an empty `name` it
    /// is named after the plug-in plus "_01".
    [[nodiscard]] PluginInstance* createInstance(CoreImplementation* core, const std::string& name);

    /// Returns the descriptor's categories, up to the first empty one.
    [[nodiscard]] std::vector<std::string> getCategories() const;
    /// Returns the data with which InstanceManager::create() makes one new tool of this kind; an
    /// empty `name` leaves the name open.
    [[nodiscard]] Tag getDefaultData(const std::string& name) const;
    /// The same without a name, for a kind that needn't be there.
    [[nodiscard]] static Tag makeData(const std::string& type);
    /// Returns the user's folder for files of this kind of tool; ends in "\". Empty if there are no
    /// user's folders.
    [[nodiscard]] std::string getUserDataFolder() const;

    /// The presets of all instances that have no list of their own; the shared file's and the
    /// user's. They live as long as the plug-in.
    [[nodiscard]] ConfigProfileManager& getConfigProfiles() { return configProfiles_; }
    [[nodiscard]] InputProfileManager& getInputProfiles() { return inputProfiles_; }

private:
    Plugin(Library* library, CCameraPlugin* descriptor, std::string name);
    template <class Answer>
    [[nodiscard]] Answer ask(const char* operation, Answer (CCameraPlugin::*operationOf)()) const;
    [[nodiscard]] std::string describe() const;
    void createFolders() const;
    void gatherProfiles(XMLFileManager& list, const char* sharedFile, const char* dataFolder,
                        const char* folder) const;
    [[nodiscard]] bool hasInstance(const PluginMember& instance) const;
    void closeGaps() const;

    Library* library_;
    CCameraPlugin* descriptor_; // owned
    std::string name_;
    // In order of creation, owned unless a reference owns them; destroying either destroys both. A
    // removed one leaves a gap, and a removed last one also removes the gaps before it, so that the
    // time to destroy a tree grows only with its instances.
    mutable std::vector<PluginMember*> instances_;
    std::int32_t instanceCount_ = 0; // without the gaps
    // The input profiles go first.
    ConfigProfileManager configProfiles_;
    InputProfileManager inputProfiles_;
};

} // namespace MVR
