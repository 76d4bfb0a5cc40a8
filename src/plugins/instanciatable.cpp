#include "plugins/instanciatable.h"

#include "core/base/error_codes.h"
#include "core/base/sdk/log.h"
#include "core/services/core_services.h"
#include "core/services/fault_list.h"
#include "core/services/user_dialogs.h"
#include "data/xml_resources.h"
#include "platform/choosers.h"
#include "platform/sdk/files.h"
#include "plugins/contract/model_words.h"
#include "plugins/libraries/plugin.h"
#include "plugins/model/elements/catalogue_words.h"
#include "plugins/model/model_file.h"
#include "plugins/model/model_paths.h"

#include <algorithm>
#include <cstddef>
#include <unordered_set>
#include <utility>

namespace MVR {
namespace {

constexpr std::uint16_t kToolPage = 196;
constexpr std::uint16_t kModelPage = 197;
constexpr const char* kPictureFile = R"(\mainicon_125_100.bmp)";
constexpr const char* kSharedData = R"([SHAREDDATAPATH]\)";
constexpr const char* kToolPicture = R"([SHAREDDATAPATH]\CORE\icons\icon_primitive_substitute.bmp)";
constexpr const char* kModelPicture = R"([SHAREDDATAPATH]\CORE\icons\icon_prm_substitute.bmp)";

constexpr std::size_t kModelSuffix = 4; // ".prm"

/// Returns the file's name without folder and suffix.
std::string nameOfModel(const std::string& path) {
    std::string name = path.substr(path.find_last_of("/\\") + 1);
    name.resize(name.size() - std::min(name.size(), kModelSuffix));
    return name;
}

} // namespace

InstanceManager::Instanciatable::Instanciatable(CoreImplementation* owner, CoreServices* services,
                                                Plugin* plugin)
    : MessageNode("Instanciatable"), CoreSubSystem(owner, services),
      data_(plugin->getDefaultData("")), name_(plugin->getName()),
      version_(plugin->getVersionText()), about_(plugin->getAbout()),
      categories_(plugin->getCategories()), plugin_(plugin) {}

InstanceManager::Instanciatable::Instanciatable(CoreImplementation* owner, CoreServices* services,
                                                Tag data, const std::string& path,
                                                std::string damage)
    : MessageNode("Instanciatable"), CoreSubSystem(owner, services), data_(std::move(data)),
      file_(path), damage_(std::move(damage)) {
    if (data_.hasName(ModelWord::kTool)) {
        name_ = data_.child(ModelWord::kName).value();
        version_ = data_.child(CatalogueWord::kVersion).value();
        about_ = data_.child(CatalogueWord::kAbout).value();
        for (std::int32_t i = 0; i < data_.childCount(); ++i)
            if (const Tag& child = data_.child(i);
                child.hasName(CatalogueWord::kCategory) && !child.value().empty())
                categories_.push_back(child.value());
    }
    if (name_.empty())
        name_ = nameOfModel(path);
    if (version_.empty())
        version_ = "1.0";
    const std::string folder = data_.attribute(kModelFolder);
    if (data_.childCount(CatalogueWord::kFolder) == 0)
        data_.addChild(Tag::element(CatalogueWord::kFolder, folder));
    else
        data_.child(CatalogueWord::kFolder).addChild(Tag::textNode(folder));
}

void InstanceManager::Instanciatable::collectRequired(const Names& entries) {
    required_.clear();
    std::unordered_set<const Instanciatable*> known;
    std::vector<const Tag*> waiting{&data_};
    while (!waiting.empty()) {
        const Tag& tag = *waiting.back();
        waiting.pop_back();
        if (&tag != &data_) {
            const auto found = entries.find(tag.child(ModelWord::kType).value());
            if (found != entries.end() && known.insert(found->second).second)
                required_.push_back(found->second);
        }
        const std::size_t first = waiting.size();
        for (std::int32_t i = 0; i < tag.childCount(); ++i)
            if (tag.child(i).hasName(ModelWord::kTool))
                waiting.push_back(&tag.child(i));
        std::reverse(waiting.begin() + static_cast<std::ptrdiff_t>(first), waiting.end());
    }
}

std::string InstanceManager::Instanciatable::findPicture() const {
    if (plugin_ != nullptr) {
        std::string picture = kSharedData + plugin_->getKey() + kPictureFile;
        return Platform::fileExists(expandPathMacros(picture)) ? picture : kToolPicture;
    }
    // The file itself may hold an element "path", and lead anywhere by it.
    std::string picture = findModelFile(data_.attribute(kModelFolder),
                                        data_.child(CatalogueWord::kFolder).value() + kPictureFile);
    return picture.empty() ? kModelPicture : picture;
}

InstanceManager::Instanciatable::Page InstanceManager::Instanciatable::describePage() const {
    Page page{plugin_ != nullptr ? kToolPage : kModelPage,
              name_,
              "Version: " + version_,
              about_,
              findPicture(),
              {}};
    for (const Instanciatable* entry : required_)
        page.required.push_back(entry->name_);
    return page;
}

InstanceReference* InstanceManager::Instanciatable::create() const {
    FaultList& faults = getServices().getFaults();
    const FaultList::Operation operation(faults);
    if (!damage_.empty()) {
        Log(Log::Error)
            .write("Created from a damaged model", file_ + ": " + damage_, Log::OwnLevel);
        faults.add({file_, "", "", damage_, reportCode(Codes::kModelUnreadable)});
        getServices().getDialogs().ask(
            "The model is damaged, and only what comes before the damage is created.\n" + file_ +
                ": " + damage_,
            "Mirvane", Platform::kButtonsOk | Platform::kIconWarning);
    }
    InstanceManager& tree = getServices().getTree();
    return tree.create(data_, tree.getSelected(), true);
}

} // namespace MVR
