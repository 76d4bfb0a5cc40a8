#pragma once

#include "data/sdk/base64_buffer.h"
#include "data/sdk/tag.h"
#include "instance/plugin_instance.h"
#include "instance/stored_input.h"
#include "plugins/instance_reference.h"
#include "plugins/model/elements/block_element.h"
#include "plugins/model/elements/element.h"
#include "plugins/model/elements/kept_values.h"
#include "plugins/model/model_place.h"
#include "plugins/model_parts.h"

#include <cstddef>
#include <cstring>
#include <map>
#include <string>
#include <utility>

namespace MVR {

/// The stored input of the tool's takes: a block for each property.
struct RecordedValuesElement {
    static constexpr const char* kWord = "recordedinputvalues";
    static constexpr const char* kBlockWord = "input";

    static void save(const ToolSaving& tool, Tag& out) {
        Tag list = Tag::element(kWord);
        std::string bytes;
        const std::map<std::size_t, Tag>& unread =
            tool.reference.getModelParts().read<KeptValues>().recorded;
        std::size_t index = 0;
        for (const Util::AVar_Linear<double>& values : tool.instance.getStoredInput().getValues()) {
            const auto kept = unread.find(index++);
            if (kept != unread.end() && values.getKeys().empty()) { // no take since
                list.addChild(kept->second);
                continue;
            }
            bytes.resize(values.getDataSize());
            values.writeData(bytes.data(), bytes.size());
            list.addChild(blockElement(kBlockWord, bytes.data(), bytes.size()));
        }
        out.addChild(std::move(list));
    }
    /// Returns false, with `out` empty, for a block that isn't what save() writes for its keys.
    static bool read(const std::string& text, Util::AVar_Linear<double>& out) {
        const Base64Buffer block(text);
        if (out.readData(block.data(), block.size()) && out.getDataSize() == block.size()) {
            std::string again(block.size(), '\0');
            out.writeData(again.data(), again.size());
            if (std::memcmp(again.data(), block.data(), block.size()) == 0)
                return true;
        }
        out = Util::AVar_Linear<double>();
        return false;
    }
    static void load(ToolLoading& tool, const Tag& data) {
        const Tag& list = data.child(kWord);
        if (list.isEmpty())
            return;
        StoredInput::Values& recorded = tool.instance.getStoredInput().getValues();
        recorded.resize(static_cast<std::size_t>(list.childCount(kBlockWord)));
        if (KeptValues* const kept = tool.reference.getModelParts().find<KeptValues>())
            kept->recorded.clear();
        std::size_t index = 0;
        for (std::int32_t i = 0; i < list.childCount(); ++i) {
            if (!list.child(i).hasName(kBlockWord))
                continue;
            if (!read(list.child(i).value(), recorded[index])) {
                tool.place.log("recorded input " + std::to_string(index),
                               "its values can't be read");
                tool.reference.getModelParts().get<KeptValues>().recorded[index] = list.child(i);
            }
            ++index;
        }
    }
};

} // namespace MVR
