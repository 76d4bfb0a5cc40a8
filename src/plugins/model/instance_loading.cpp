#include "plugins/model/instance_loading.h"

#include "core/base/error_codes.h"
#include "core/base/sdk/log.h"
#include "core/contract/adaptor_interface.h"
#include "core/services/core_services.h"
#include "data/sdk/packed_tag.h"
#include "instance/plugin_instance.h"
#include "plugins/contract/model_words.h"
#include "plugins/instance_manager.h"
#include "plugins/instance_reference.h"
#include "plugins/libraries/library_manager.h"
#include "plugins/libraries/plugin.h"
#include "plugins/libraries/root_plugin.h"
#include "plugins/model/elements/table.h"
#include "plugins/model/elements/tool_name.h"
#include "plugins/model/elements/tool_type.h"
#include "plugins/model/elements/unknown_elements.h"
#include "plugins/model/model_place.h"
#include "plugins/model/tool_start.h"
#include "plugins/model_parts.h"

#include <cstddef>
#include <deque>
#include <optional>
#include <utility>

namespace MVR {
namespace {

/// Unpacks `data`; `isInside` tells that it is within what was packed, of which `textLeft` bytes
/// may be. Returns false if that holds no whole tool. It stays the element of a tool, so that one
/// without anything of a tool in it counts as failed.
bool unpackTool(Tag& data, bool isInside, std::size_t& textLeft) {
    if (!data.hasName(ModelWord::kTool))
        return true;
    bool isWhole = true;
    for (; isWhole && isPacked(data) && data.hasName(ModelWord::kTool); isInside = true)
        isWhole = isInside ? unpackTag(data, textLeft) : unpackTag(data);
    if (data.hasName(ModelWord::kTool))
        return isWhole;
    data = Tag::element(ModelWord::kTool);
    return false;
}

/// One tool in the making, with its open entry in the log. Its tools below come between the
/// constructor and end().
class ToolLoad {
public:
    /// `outermost` is the one that all others of the model hang below, and `above` the one that
    /// this tool does; both null for the outermost itself. For `textLeft` see unpackTool().
    ToolLoad(CoreServices& services, Tag& data, const std::string& path, const ToolLoad* outermost,
             const ToolLoad* above, std::size_t& textLeft)
        : services_(services), data_(data), path_(path),
          isInPacked_(isPacked(data) || (above != nullptr && above->isInPacked_)),
          isUnpacked_(unpackTool(data, above != nullptr && above->isInPacked_, textLeft)),
          place_(outermost != nullptr ? outermost->place_
                                      : ModelPlace(services.getFaults(), data, path)) {
        isMade_ = begin(above == nullptr || above->isMade_);
    }

    /// Returns the data of the next tool below, or null if there is none left.
    Tag* nextChild() {
        while (nextChild_ < data_.childCount()) {
            Tag& child = data_.child(nextChild_++);
            if (child.hasName(ModelWord::kTool))
                return &child;
        }
        return nullptr;
    }

    /// Adds the result of a tool below.
    void addChild(Util::Owned<InstanceReference> child, std::int32_t childError) {
        if (!isMade_)
            return;
        const bool isUsable = ErrorCode::instance()->find(childError).getType() > ErrorCode::Error;
        if (isUsable && reference_.get() != nullptr)
            reference_.get()->add(child.release());
        else
            child.reset();
        if (isUsable)
            return;
        Log entry("Error detected while instanciating plugins. Trying to continue anyway",
                  Log::Warning);
        error_ = reportCode(Codes::kSubPluginMissing);
    }

    std::pair<Util::Owned<InstanceReference>, std::int32_t> end(std::vector<PlannedTool>& planned) {
        if (isMade_)
            adaptor().endUndo();
        InstanceReference* const made = isMade_ ? reference_.get() : nullptr;
        planned.push_back({InstanceReference::Watch(made), std::move(place_)});
        return {Util::Owned<InstanceReference>(made), error_};
    }

private:
    AdaptorInterface& adaptor() const { return *services_.getAdaptor(); }

    bool begin(bool isAboveMade);
    bool makeInstance(Plugin& plugin, const std::string& type);

    CoreServices& services_;
    Tag& data_;
    const std::string& path_;
    bool isInPacked_; // it, or one above, was packed
    bool isUnpacked_; // whole
    ModelPlace place_;
    std::optional<Log> entry_;
    InstanceReference::Watch reference_{nullptr}; // a tool, or the host's undo, may destroy it
    std::int32_t error_ = 0;
    std::int32_t nextChild_ = 0;
    bool isMade_ = false;
};

bool ToolLoad::begin(bool isAboveMade) {
    if (!data_.hasName(ModelWord::kTool)) {
        Log(Log::Error).write("Trying to instanciate plugin with invalid data structure");
        error_ = reportCode(Codes::kInvalidData);
        return false;
    }
    const std::string& type = TypeElement::read(data_);
    place_.setTool(data_);
    if (!isAboveMade) {
        place_.logMissing(ModelWord::kTool, "the tool above it can't be created",
                          reportCode(Codes::kSubPluginMissing));
        return false;
    }
    entry_.emplace("Creating " + type, Log::Notice);
    Plugin* const plugin = LibraryManager::instance()->findPlugin(type);
    // A second root would be saved as one, and what is below it lost.
    if (plugin == nullptr ||
        (type == RootPlugin::kName && services_.getTree().getRoot() != nullptr)) {
        entry_->write("Could not find plugin type", type, Log::Warning);
        error_ = reportCode(Codes::kPluginNotFound);
        if (isUnpacked_)
            place_.logMissing(TypeElement::kWord, "there is no such kind of tool: " + type, error_);
        else
            place_.logMissing(ModelWord::kTool, "its packed text can't be read", error_);
        return false;
    }
    if (!isUnpacked_)
        place_.log(ModelWord::kTool, "its packed text can't be read whole");
    adaptor().beginUndo("Create Oskel " + type);
    if (!makeInstance(*plugin, type))
        return false;
    UnknownElements::read(data_, reference_.get()->getModelParts());
    ToolLoading tool{*reference_.get(), *reference_.get()->getInstance(), place_, path_};
    loadElements(Moment::BeforeInit, tool, data_);
    if (reference_.get() == nullptr) { // the tool removed itself
        adaptor().endUndo();
        return false;
    }
    if (!ToolStart(*reference_.get(), data_, place_, *entry_).run(path_))
        return false;
    entry_->write("Entering highpoly loading routines");
    loadElements(Moment::Started, tool, data_);
    return true;
}

bool ToolLoad::makeInstance(Plugin& plugin, const std::string& type) {
    const std::string& name = NameElement::read(data_);
    PluginInstance* const instance = plugin.createInstance(services_.getTree().getCore(), name);
    if (instance->getCode() == nullptr) { // the plug-in made no tool object
        instance->destroy();
        adaptor().cancelUndo();
        entry_->write("Unable to instanciate plugin", type, Log::Error);
        error_ = reportCode(Codes::kCouldNotInstanciate);
        place_.logMissing(ModelWord::kTool, "the tool's library can't make it", error_);
        return false;
    }
    instance->setNameFromData(name.empty() ? instance->getName() : name);
    instance->setUnderCreation(true);
    reference_.set(services_.getTree().createReference(instance));
    return reference_.get() != nullptr;
}

} // namespace

Util::Owned<InstanceReference> instantiate(CoreServices& services, Tag& data, std::int32_t& error,
                                           const std::string& path,
                                           std::vector<PlannedTool>& planned,
                                           std::size_t& textLeft) {
    std::deque<ToolLoad> open; // not the machine's stack, which nested data could exhaust
    open.emplace_back(services, data, path, nullptr, nullptr, textLeft);
    while (true) {
        if (Tag* const child = open.back().nextChild()) {
            open.emplace_back(services, *child, path, &open.front(), &open.back(), textLeft);
            continue;
        }
        auto [reference, code] = open.back().end(planned);
        open.pop_back();
        if (open.empty()) {
            error = code;
            return std::move(reference); // a structured binding isn't moved by itself
        }
        open.back().addChild(std::move(reference), code);
    }
}

} // namespace MVR
