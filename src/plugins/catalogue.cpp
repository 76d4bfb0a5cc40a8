#include "plugins/catalogue.h"

#include "core/base/sdk/log.h"
#include "core/contract/catalogue_words.h"
#include "core/services/fault_list.h"
#include "platform/sdk/files.h"
#include "plugins/libraries/library.h"
#include "plugins/libraries/library_manager.h"
#include "plugins/libraries/plugin.h"
#include "plugins/model/model_file.h"

#include <set>
#include <utility>

namespace MVR {
namespace {

// For one PRM folder, so that no unpacked archive and no link makes the start endless.
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

Catalogue::Entry* Catalogue::getEntry(std::int32_t index) const {
    return index >= 0 && index < size() ? entries_[static_cast<std::size_t>(index)].get() : nullptr;
}

void Catalogue::clear() {
    while (!entries_.empty())
        entries_.pop_back();
}

void Catalogue::build() {
    clear();
    const LibraryManager& libraries = *LibraryManager::instance();
    for (std::int32_t i = 0; i < libraries.getLibraryCount(); ++i) {
        const Library& library = *libraries.getLibrary(i);
        for (std::int32_t j = 0; j < library.getPluginCount(); ++j) {
            Plugin* const plugin = library.getPlugin(j);
            if (!plugin->isInternal())
                entries_.emplace_back(new Entry(owner_.getCore(), &owner_.getServices(), plugin));
        }
    }
    for (const std::string& folder : folders_)
        addModels(folder);
    Entry::Names names;
    std::vector<std::string> texts; // owns what the names view
    texts.reserve(entries_.size());
    for (const auto& entry : entries_)
        names.emplace(texts.emplace_back(entry->getName()), entry.get());
    for (const auto& entry : entries_)
        entry->collectRequired(names);
}

void Catalogue::addModels(const std::string& folder) {
    const ModelListing listing(folder);
    for (const std::string& path : listing.getFiles()) {
        Tag data;
        // A damaged one is listed too: creating it tells of the damage.
        FaultList faults;
        const FaultList::Operation reading(faults);
        const bool isWhole = readModelFile(path, data, &faults);
        entries_.emplace_back(new Entry(owner_.getCore(), &owner_.getServices(), std::move(data),
                                        path, isWhole ? "" : faults.getFaults().front().text));
    }
}

Tag Catalogue::describe() const {
    Tag catalogue = Tag::element(CatalogueWord::kCatalogue);
    for (const auto& each : entries_) {
        Tag& entry = catalogue.addChild(Tag::element(CatalogueWord::kEntry));
        addText(entry, CatalogueWord::kName, each->getName());
        addText(entry, CatalogueWord::kVersion, each->getVersion());
        addText(entry, CatalogueWord::kAbout, each->getAbout());
        for (const std::string& category : each->getCategories())
            addText(entry, CatalogueWord::kCategory, category);
        if (const Plugin* const plugin = each->getPlugin()) {
            addText(entry, CatalogueWord::kType, plugin->getName());
            addText(entry, CatalogueWord::kDescription, plugin->getDescription());
            addText(entry, CatalogueWord::kAuthor, plugin->getAuthor());
            if (const Library& library = plugin->getLibrary(); library.getModule() != nullptr)
                addText(entry, CatalogueWord::kLibrary, Platform::foldPath(library.getPath()));
        }
        addText(entry, CatalogueWord::kFile, each->getFile());
        for (const Entry* required : each->getRequired())
            addText(entry, CatalogueWord::kRequired, required->getName());
    }
    for (const LibraryManager::Refused& each : LibraryManager::instance()->getRefused()) {
        Tag& refused = catalogue.addChild(Tag::element(CatalogueWord::kRefused));
        addText(refused, CatalogueWord::kFile, Platform::foldPath(each.path));
        addText(refused, CatalogueWord::kText, each.text);
    }
    return catalogue;
}

} // namespace MVR
