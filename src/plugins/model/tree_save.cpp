#include "plugins/model/tree_save.h"

#include "core/base/sdk/log.h"
#include "data/sdk/packed_tag.h"
#include "instance/plugin_instance.h"
#include "plugins/contract/c_camera_plugin.h"
#include "plugins/contract/model_words.h"
#include "plugins/instance_reference.h"
#include "plugins/libraries/plugin.h"
#include "plugins/libraries/root_plugin.h"
#include "plugins/model/elements/table.h"
#include "plugins/model/elements/unknown_elements.h"
#include "plugins/model_parts.h"

#include <cstddef>
#include <deque>
#include <utility>

namespace MVR {
namespace {

/// Writes a tool without those below it; nothing if it is destroyed meanwhile.
Tag saveTool(InstanceReference& reference, std::uint32_t mask) {
    PluginInstance* const instance = reference.getInstance();
    if (instance == nullptr)
        return {};
    if (instance->getPlugin()->getName() == RootPlugin::kName) {
        Log(Log::Notice).write("Creating MVR tag");
        return Tag::element(ModelWord::kTree);
    }
    Tag tag = Tag::element(ModelWord::kTool);
    tag.attributeRef("version") = kToolDataVersion;
    return saveElements({reference, *instance, mask}, tag) ? std::move(tag) : Tag();
}

/// The writing of one tool under way, with its open entry in the log.
class ToolSave {
public:
    ToolSave(InstanceReference& reference, std::uint32_t mask)
        : saved_(&reference), entry_("Creating configuration file", Log::Notice) {
        entry_.write("instance", reference.getLabel(), Log::OwnLevel);
        own_ = saveTool(reference, mask);
    }

    /// Adds what was written of this tool itself after the siblings before it. Returns false if
    /// there is nothing to write.
    bool moveTo(ToolSave& parent) {
        if (own_.isEmpty())
            return false;
        out_ = &parent.out_->addChild(std::move(own_));
        return true;
    }
    void moveTo(Tag& out) {
        out = std::move(own_);
        out_ = &out;
    }

    /// The tools below have been written.
    void finish() {
        if (InstanceReference* const reference = saved_.get();
            reference != nullptr && !out_->isEmpty())
            reference->getModelParts().read<UnknownElements>().writeTo(*out_);
    }

    InstanceReference* nextChild() {
        InstanceReference* const reference = saved_.get(); // a tool may end meanwhile
        if (reference == nullptr || next_ >= reference->getChildren().size())
            return nullptr;
        return reference->getChildReference(next_++);
    }

private:
    InstanceReference::Watch saved_;
    Log entry_;
    Tag own_;
    Tag* out_ = nullptr;
    std::size_t next_ = 0;
};

} // namespace

void saveTree(InstanceReference& top, Tag& out, std::uint32_t mask) {
    std::deque<ToolSave> open;
    open.emplace_back(top, mask).moveTo(out);
    const bool hasChildren = (mask & SaveMask::kNoChildren) == 0;
    while (!open.empty()) {
        ToolSave& parent = open.back();
        if (InstanceReference* const child = hasChildren ? parent.nextChild() : nullptr) {
            if (!open.emplace_back(*child, mask).moveTo(parent))
                open.pop_back();
            continue;
        }
        parent.finish();
        open.pop_back();
    }
    if ((mask & SaveMask::kPacked) != 0 && out.hasName(ModelWord::kTool))
        out = packTag(out, ModelWord::kTool);
}

} // namespace MVR
