#include "plugins/model/attribute_pass.h"

#include "core/base/error_codes.h"
#include "core/base/sdk/log.h"
#include "core/services/core_services.h"
#include "data/sdk/tag.h"
#include "instance/plugin_instance.h"
#include "plugins/contract/model_words.h"
#include "plugins/instance_reference.h"
#include "plugins/model/elements/table.h"
#include "plugins/model/elements/tool_name.h"
#include "plugins/model/instance_index.h"
#include "plugins/model/model_file.h"
#include "plugins/model/model_place.h"

#include <cstddef>
#include <deque>
#include <optional>
#include <string>
#include <string_view>
#include <unordered_map>

namespace MVR {
namespace {

/// A reference under way, with its open entry in the log.
struct Level {
    Level(InstanceReference& passed, const Tag& tag, std::uint32_t stages)
        : reference(&passed), data(tag),
          entry("Setting object attributes for " + passed.getInstanceName(), Log::Notice) {
        entry.write("flags", static_cast<std::int32_t>(stages), Log::OwnLevel);
    }

    /// Returns the data of a child: the first element of a tool with its name; null if there is
    /// none.
    const Tag* find(const InstanceReference& child) {
        if (byName.empty())
            for (std::int32_t i = 0; i < data.childCount(); ++i)
                if (data.child(i).hasName(ModelWord::kTool))
                    byName.emplace(NameElement::read(data.child(i)), &data.child(i));
        const auto found = byName.find(child.getInstanceName());
        return found != byName.end() ? found->second : nullptr;
    }

    InstanceReference::Watch reference; // a tool may end meanwhile
    const Tag& data;
    Log entry;
    std::size_t nextChild = 0;
    std::unordered_map<std::string_view, const Tag*> byName;
};

class AttributePass {
public:
    AttributePass(InstanceReference& start, const Tag& data, std::uint32_t stages)
        : start_(start), data_(data), stages_(stages), index_(start),
          folder_(data.attribute(kModelFolder)) {
        if (!data.hasName(ModelWord::kTree))
            setModel(start, data);
    }

    std::int32_t run();

private:
    void setModel(const InstanceReference& outermost, const Tag& tag);
    std::int32_t begin(InstanceReference& reference, const Tag& tag);

    InstanceReference& start_;
    const Tag& data_;
    std::uint32_t stages_;
    InstanceIndex index_;
    const std::string folder_;
    std::optional<ModelPlace> place_; // from the first tool on
    std::deque<Level> open_;
};

std::int32_t AttributePass::run() {
    const std::int32_t result = begin(start_, data_);
    while (!open_.empty()) {
        Level& level = open_.back();
        InstanceReference* const reference = level.reference.get();
        if (reference == nullptr || level.nextChild >= reference->getChildren().size()) {
            open_.pop_back();
            continue;
        }
        InstanceReference* const child = reference->getChildReference(level.nextChild++);
        const Tag* const tag = level.find(*child);
        if (tag == nullptr)
            continue;
        if (data_.hasName(ModelWord::kTree) && open_.size() == 1) // each is a model of its own
            setModel(*child, *tag);
        (void)begin(*child, *tag); // a failure further down stops nothing
    }
    return result;
}

/// Faults from now on are those of the model that `tag` is; a holder has none.
void AttributePass::setModel(const InstanceReference& outermost, const Tag& tag) {
    if (CoreServices* const services = outermost.getServices())
        place_.emplace(services->getFaults(), tag, folder_);
}

/// Applies what `tag` holds of this tool itself; those below come next, unless they are left out.
std::int32_t AttributePass::begin(InstanceReference& reference, const Tag& tag) {
    open_.emplace_back(reference, tag, stages_);
    PluginInstance* const instance = reference.getInstance();
    if (tag.hasName(ModelWord::kTree) || instance == nullptr)
        return 0;
    const bool isTool = tag.hasName(ModelWord::kTool);
    if (!isTool || NameElement::read(tag) != reference.getInstanceName()) {
        Log(Log::Error)
            .write(isTool ? std::string("Error: The provided data structure is not supposed for "
                                        "this instance")
                          : std::string("Error: The provided data structure is not a ") +
                                ModelWord::kTool + " tag");
        open_.pop_back();
        return reportCode(Codes::kInvalidData);
    }
    place_->setTool(tag);
    ToolLoading tool{reference, *instance, *place_, {}, stages_, &index_};
    loadStages(tool, tag);
    if (tool.isBranchDone)
        open_.pop_back();
    return tool.code;
}

} // namespace

std::int32_t runAttributePass(InstanceReference& start, const Tag& data, std::uint32_t stages) {
    return AttributePass(start, data, stages).run();
}

} // namespace MVR
