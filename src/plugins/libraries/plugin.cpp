#include "plugins/libraries/plugin.h"

#include "core/base/error_codes.h"
#include "core/base/folders.h"
#include "core/base/sdk/log.h"
#include "platform/sdk/files.h"
#include "plugins/contract/model_words.h"
#include "plugins/libraries/instance_maker.h"
#include "plugins/libraries/library.h"
#include "plugins/libraries/library_manager.h"

#include <algorithm>

namespace MVR {
namespace {

constexpr const char* kInputProfileFolder = R"(\InputProfiles)";
constexpr const char* kConfigProfileFolder = R"(\ConfigProfiles)";

} // namespace

Plugin* Plugin::create(Library* library, CCameraPlugin* descriptor, std::int32_t& error) {
    Log entry("Creating plugin", Log::Notice);
    if (library == nullptr) {
        error = reportCode(Codes::kPluginNoLibrary);
        return nullptr;
    }
    if (descriptor == nullptr) {
        error = reportCode(Codes::kPluginNoHandler);
        return nullptr;
    }
    entry.write(descriptor->getName());
    return new Plugin(library, descriptor);
}

Plugin::Plugin(Library* library, CCameraPlugin* descriptor)
    : MessageNode("Plugin"), library_(library), descriptor_(descriptor) {
    Log entry("Creating Plugin", Log::Notice);
    entry.write("name", getName(), Log::OwnLevel);
    createFolders();
    gatherProfiles(inputProfiles_, R"(\inputprofile.xml)", R"(\data\)", kInputProfileFolder);
    gatherProfiles(configProfiles_, R"(\configprofile.xml)", R"(/data\)", kConfigProfileFolder);
    library_->registerPlugin(this);
}

Plugin::~Plugin() {
    Log entry("Destroying plugin: " + getName(), Log::Notice);
    while (getInstanceCount() > 0)
        instances_.back()->end();
    library_->unregisterPlugin(this);
    entry.write("Destroying CPlugin");
    descriptor_.reset();
}

/// Makes the folders of each level of the key, and in the last those of the profiles. One that
/// can't be made results in a list without files.
void Plugin::createFolders() const {
    const std::string root = resolveDocumentsPath();
    if (root.empty())
        return;
    std::vector<std::string> folders{root.substr(0, root.find_last_of("/\\")), root,
                                     root + "\\Data\\"};
    std::string path = folders.back() + descriptor_->getKey();
    for (std::size_t i = folders.back().size(); i < path.size(); ++i)
        if (path[i] == '/' || path[i] == '\\') {
            folders.push_back(path.substr(0, i));
            path[i] = '\\';
        }
    folders.insert(folders.end(), {path, path + kInputProfileFolder, path + kConfigProfileFolder});
    for (const std::string& folder : folders)
        (void)Platform::createFolder(folder);
}

/// The shared file first, so that the user's own presets replace those that come with the tool.
void Plugin::gatherProfiles(XMLFileManager& list, const char* sharedFile, const char* dataFolder,
                            const char* folder) const {
    const std::string documents = resolveDocumentsPath();
    const std::string shared = readInstallValue("datapath");
    const std::string key = descriptor_->getKey();
    const std::string own = documents + dataFolder + key + folder;
    if (!documents.empty()) // otherwise it would be a folder in the machine's root
        list.setDestinationPath(own);
    if (!shared.empty())
        list.addSourcePath(shared + "\\" + key + sharedFile);
    if (!documents.empty())
        list.addSourcePath(own);
    list.addReadOnlyName(kFactorySettings);
    list.reload();
}

PluginInstance* Plugin::getInstance(std::int32_t index) const {
    const PluginMember* const member = getMember(index);
    return member != nullptr ? member->getInstance() : nullptr;
}

PluginMember* Plugin::getMember(std::int32_t index) const {
    if (index < 0 || index >= getInstanceCount())
        return nullptr;
    if (instances_.size() != static_cast<std::size_t>(instanceCount_))
        closeGaps();
    return instances_[static_cast<std::size_t>(index)];
}

void Plugin::closeGaps() const {
    instances_.erase(std::remove(instances_.begin(), instances_.end(), nullptr), instances_.end());
    for (std::size_t i = 0; i < instances_.size(); ++i)
        instances_[i]->place_ = i;
}

bool Plugin::hasInstance(const PluginMember& instance) const {
    return instance.place_ < instances_.size() && instances_[instance.place_] == &instance;
}

void Plugin::addInstance(PluginMember& instance) {
    if (hasInstance(instance))
        return;
    instance.place_ = instances_.size();
    instances_.push_back(&instance);
    ++instanceCount_;
}

void Plugin::removeInstance(PluginMember& instance) {
    if (!hasInstance(instance))
        return;
    instances_[instance.place_] = nullptr;
    --instanceCount_;
    while (!instances_.empty() && instances_.back() == nullptr)
        instances_.pop_back();
}

PluginInstance* Plugin::createInstance(CoreImplementation* core, const std::string& name) {
    return LibraryManager::instance()->getMaker().makeInstance(core, this, name);
}

std::vector<std::string> Plugin::getCategories() const {
    std::vector<std::string> names;
    std::string rest = descriptor_->getCategory();
    while (!rest.empty() && rest.front() != ';') {
        const std::size_t end = rest.find(';');
        names.push_back(rest.substr(0, end));
        rest.erase(0, end == std::string::npos ? end : end + 1);
    }
    return names;
}

Tag Plugin::getDefaultData(const std::string& name) const {
    Tag data = makeData(getName());
    if (!name.empty())
        data.addChild(Tag::element(ModelWord::kName, name));
    return data;
}

Tag Plugin::makeData(const std::string& type) {
    Tag data = Tag::element(ModelWord::kTool);
    data.attributeRef("version") = kToolDataVersion;
    data.addChild(Tag::element(ModelWord::kType, type));
    return data;
}

std::string Plugin::getUserDataFolder() const {
    const std::string root = resolveDocumentsPath();
    return root.empty() ? root : root + "\\data\\" + descriptor_->getKey() + "\\";
}

} // namespace MVR
