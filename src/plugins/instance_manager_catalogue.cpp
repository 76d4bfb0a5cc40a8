#include "plugins/instance_manager.h"

#include "core/base/sdk/error_code.h"
#include "core/base/sdk/log.h"
#include "core/services/core_services.h"
#include "core/services/fault_list.h"
#include "platform/sdk/files.h"
#include "plugins/contract/extension_ids.h"
#include "plugins/instanciatable.h"
#include "plugins/libraries/library.h"
#include "plugins/libraries/library_manager.h"
#include "plugins/libraries/plugin.h"
#include "plugins/model/model_file.h"

#include <set>
#include <utility>

namespace MVR {
namespace {

// Of one PRM folder, so that no unpacked archive and no link makes the start endless.
constexpr std::size_t kMostModels = 100000;
constexpr std::int32_t kMostFolderLevels = 32;

/// The models of a folder, those of its subfolders after its own.
class ModelListing {
public:
    explicit ModelListing(const std::string& folder) { list(folder, 1); }
    [[nodiscard]] const std::vector<std::string>& getFiles() const { return files_; }

private:
    void list(std::string folder, std::int32_t level) {
        if (folder.empty() || (folder.back() != '\\' && folder.back() != '/'))
            folder += '\\';
        // Links may lead back here, or to one folder by many ways.
        const std::string canonical = Platform::canonicalPath(folder);
        if (canonical.empty() || !visited_.insert(canonical).second)
            return;
        if (level > kMostFolderLevels)
            return refuse("Folders of models are nested too deeply", folder);
        for (const Platform::FoundFile& file : Platform::listFiles(folder + "*.prm")) {
            if (files_.size() == kMostModels)
                return refuse("Too many models", folder);
            if (file.isRegular)
                files_.push_back(folder + file.name);
        }
        for (const Platform::FoundFile& file : Platform::listFiles(folder + "*.*"))
            if (file.isFolder)
                list(folder + file.name, level + 1);
    }

    static void refuse(const char* reason, const std::string& folder) {
        Log(Log::Warning).write(reason, folder, Log::OwnLevel);
    }

    std::vector<std::string> files_;
    std::set<std::string> visited_;
};

void addText(Tag& entry, const char* name, const std::string& value) {
    if (!value.empty())
        entry.addChild(Tag::element(name, value));
}

} // namespace

std::int32_t InstanceManager::getCatalogueSize() const {
    return static_cast<std::int32_t>(catalogue_.size());
}

InstanceManager::Instanciatable* InstanceManager::getCatalogueEntry(std::int32_t index) const {
    return index >= 0 && index < getCatalogueSize()
               ? catalogue_[static_cast<std::size_t>(index)].get()
               : nullptr;
}

void InstanceManager::clearCatalogue() {
    while (!catalogue_.empty())
        catalogue_.pop_back();
}

void InstanceManager::buildCatalogue() {
    clearCatalogue();
    const LibraryManager& libraries = *LibraryManager::instance();
    for (std::int32_t i = 0; i < libraries.getLibraryCount(); ++i) {
        const Library& library = *libraries.getLibrary(i);
        for (std::int32_t j = 0; j < library.getPluginCount(); ++j) {
            Plugin* const plugin = library.getPlugin(j);
            if (!plugin->getDescriptor()->supportsExtension(DescriptorExtension::kInternal))
                catalogue_.emplace_back(new Instanciatable(getCore(), &getServices(), plugin));
        }
    }
    for (const std::string& folder : prmFolders_)
        addModels(folder);
    Instanciatable::Names names;
    std::vector<std::string> texts; // what the names view
    texts.reserve(catalogue_.size());
    for (const auto& entry : catalogue_)
        names.emplace(texts.emplace_back(entry->getName()), entry.get());
    for (const auto& entry : catalogue_)
        entry->collectRequired(names);
}

void InstanceManager::addModels(const std::string& folder) {
    const ModelListing listing(folder);
    for (const std::string& path : listing.getFiles()) {
        Tag data;
        // A damaged one is listed too: creating it shows the damage.
        (void)readModelFile(path, data);
        catalogue_.emplace_back(
            new Instanciatable(getCore(), &getServices(), std::move(data), path));
    }
}

Tag InstanceManager::describeCatalogue() const {
    Tag catalogue = Tag::element("Catalogue");
    for (const auto& each : catalogue_) {
        Tag& entry = catalogue.addChild(Tag::element("entry"));
        addText(entry, "name", each->getName());
        addText(entry, "version", each->getVersion());
        addText(entry, "about", each->getAbout());
        for (const std::string& category : each->getCategories())
            addText(entry, "category", category);
        if (each->getPlugin() != nullptr)
            addText(entry, "type", each->getPlugin()->getName());
        addText(entry, "file", each->getFile());
        for (const Instanciatable* required : each->getRequired())
            addText(entry, "required", required->getName());
    }
    return catalogue;
}

std::int32_t InstanceManager::createFromFile(const std::string& path, InstanceReference* parent) {
    ErrorCode& errors = *ErrorCode::instance();
    FaultList& faults = getServices().getFaults();
    const FaultList::Operation operation(faults);
    const std::size_t faultsBefore = faults.getFaults().size();
    // Each tool that is missing tells why, but one that took itself away.
    const auto addUntold = [&](const std::string& text) {
        if (faults.getFaults().size() == faultsBefore)
            faults.add({path, "", "", text, 0});
    };
    Tag model;
    if (!readModelFile(path, model))
        return errors.get("MODEL_UNREADABLE", "The model's file can't be read", ErrorCode::Error);
    if (!model.hasName("MVR") && !model.hasName("MVR_Plugin")) {
        Log(Log::Error).write("No model in file", path, Log::OwnLevel);
        addUntold("it holds no model");
        return errors.get("MODEL_INVALID", "The file holds no model", ErrorCode::Error);
    }
    const Creation creation = createAll(std::move(model), parent, true);
    if (creation.first == nullptr) {
        Log(Log::Error).write("Nothing created from model", path, Log::OwnLevel);
        addUntold("no tool of it could be made");
        return errors.get("MODEL_NOTHINGCREATED", "No tool of the model could be created",
                          ErrorCode::Error);
    }
    if (creation.missing == 0)
        return 0;
    addUntold("some of its tools are missing");
    Log(Log::Warning)
        .write("Tools missing from model " + path, static_cast<std::int32_t>(creation.missing),
               Log::OwnLevel);
    return errors.get("MODEL_INCOMPLETE", "Some tools of the model could not be created",
                      ErrorCode::Warning);
}

} // namespace MVR
