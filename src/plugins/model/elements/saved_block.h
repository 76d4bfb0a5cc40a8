#pragma once

#include "data/sdk/base64_buffer.h"
#include "data/sdk/tag.h"
#include "instance/plugin_instance.h"
#include "plugins/instance_reference.h"
#include "plugins/model/elements/block_element.h"
#include "plugins/model/elements/element.h"
#include "plugins/model/elements/kept_values.h"
#include "plugins/model/model_place.h"
#include "plugins/model_parts.h"

#include <cstddef>

namespace MVR {

/// The tool's saved block. A tool whose data has this element, even an empty one, was saved; any
/// other is a new one.
struct SavedBlockElement {
    static constexpr const char* kWord = "savedata";

    static bool isIn(const Tag& data) { return !data.child(kWord).isEmpty(); }
    static void save(const ToolSaving& tool, Tag& out) {
        const InstanceReference::Watch alive(&tool.reference);
        const std::int32_t code = tool.instance.getTool().save();
        if (alive.get() == nullptr)
            return;
        const void* bytes = nullptr;
        const std::int32_t size = tool.instance.getSaveData(&bytes);
        const Tag& unread = tool.reference.getModelParts().read<KeptValues>().savedBlock;
        if (size == 0 && !unread.isEmpty())
            out.addChild(unread);
        else if (code == 0)
            out.addChild(blockElement(kWord, bytes, static_cast<std::size_t>(size)));
    }
    static void load(ToolLoading& tool, const Tag& data) {
        const Tag& saved = data.child(kWord);
        const Base64Buffer block(saved.value());
        if (!saved.value().empty() && block.size() == 0) {
            tool.place.log(kWord, "it can't be read");
            tool.reference.getModelParts().get<KeptValues>().savedBlock = saved;
        }
        tool.instance.setSaveData(block.data(), static_cast<std::int32_t>(block.size()));
    }
};

} // namespace MVR
