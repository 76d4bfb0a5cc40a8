#include "plugins/libraries/plugin.h"

#include "core/base/border.h"
#include "core/base/error_codes.h"
#include "core/base/folders.h"
#include "core/base/sdk/log.h"
#include "platform/sdk/files.h"
#include "plugins/contract/extension_ids.h"
#include "plugins/contract/model_words.h"
#include "plugins/libraries/instance_maker.h"
#include "plugins/libraries/library.h"
#include "plugins/libraries/library_manager.h"

#include <algorithm>
#include <utility>

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
    std::string name;
    if (!Border::call([library] { return "A kind of tool of " + library->getPath(); }, "getName",
                      [&] { name = descriptor->getName(); })) {
        error = reportCode(Codes::kException);
        return nullptr;
    }
    entry.write(name);
    return new Plugin(library, descriptor, std::move(name));
}

Plugin::Plugin(Library* library, CCameraPlugin* descriptor, std::string name)
    : MessageNode("Plugin"), library_(library), descriptor_(descriptor), name_(std::move(name)) {
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
    (void)Border::call([this] { return describe(); }, "destroy",
                       [this] { descriptor_->destroy(); });
}

std::string Plugin::describe() const {
    return "The kind of tool " + name_ + " of " + library_->getPath();
}

template <class Answer>
Answer Plugin::ask(const char* operation, Answer (CCameraPlugin::*operationOf)()) const {
    return Border::ask([this] { return describe(); }, operation, Answer(),
                       [&] { return (descriptor_->*operationOf)(); });
}

std::string Plugin::getKey() const {
    return ask("getKey", &CCameraPlugin::getKey);
}

std::string Plugin::getDescription() const {
    return ask("getDescription", &CCameraPlugin::getDescription);
}

std::string Plugin::getAuthor() const {
    return ask("getAuthor", &CCameraPlugin::getAuthor);
}

std::string Plugin::getAbout() const {
    return ask("getAbout", &CCameraPlugin::getAbout);
}

std::string Plugin::getVersionText() const {
    return Border::ask([this] { return describe(); }, "getVersion", std::string(),
                       [this] { return descriptor_->getVersionText(); });
}

std::vector<std::string> Plugin::getOldNames() const {
    std::vector<std::string> names;
    (void)Border::call([this] { return describe(); }, "extend(16)",
                       [&] {
                           descriptor_->extend(DescriptorExtension::kOldNames,
                                               reinterpret_cast<std::intptr_t>(&names));
                       });
    return names;
}

bool Plugin::isInternal() const {
    return Border::ask(
        [this] { return describe(); }, "supportsExtension", false,
        [this] { return descriptor_->supportsExtension(DescriptorExtension::kInternal); });
}

/// Makes the folders of each level of the key, and in the last those of the profiles. One that
/// can't be made results in a list without files.
void Plugin::createFolders() const {
    const std::string root = resolveDocumentsPath();
    if (root.empty())
        return;
    std::vector<std::string> folders{root.substr(0, root.find_last_of("/\\")), root,
                                     root + "\\Data\\"};
    std::string path = folders.back() + getKey();
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
    const std::string key = getKey();
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
    std::string rest = ask("getCategory", &CCameraPlugin::getCategory);
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
    return root.empty() ? root : root + "\\data\\" + getKey() + "\\";
}

} // namespace MVR
