#include "plugins/recent_list.h"

#include "core/contract/core_interface.h"
#include "core/contract/setting_ids.h"
#include "core/services/core_services.h"
#include "plugins/contract/model_words.h"

#include <algorithm>
#include <cstddef>
#include <utility>

namespace MVR {
namespace {

constexpr std::int32_t kDefaultItems = 10;

} // namespace

Tag RecentList::getEntry(std::int32_t index) const {
    return index >= 0 && index < size() ? entries_[static_cast<std::size_t>(index)] : Tag();
}

std::string RecentList::getLabel(std::int32_t index) const {
    Tag wrapper = getEntry(index);
    if (!wrapper.hasName(ModelWord::kTree)) {
        Tag inner = std::exchange(wrapper, Tag::element(ModelWord::kTree));
        wrapper.addChild(std::move(inner));
    }
    std::string label;
    for (std::int32_t i = 0; i < wrapper.childCount(); ++i) {
        const Tag& tool = wrapper.child(i);
        if (!tool.hasName(ModelWord::kTool))
            continue;
        const std::string& name = tool.child(ModelWord::kName).value();
        const std::string& shown = name.empty() ? tool.child(ModelWord::kType).value() : name;
        if (!shown.empty())
            label += (label.empty() ? "" : ", ") + shown;
    }
    return label;
}

void RecentList::restore(const Tag& tag) {
    entries_.clear();
    if (!tag.hasName("Recent"))
        return;
    for (std::int32_t i = 0; i < tag.childCount(); ++i)
        entries_.push_back(tag.child(i));
    trim();
}

Tag RecentList::store() const {
    Tag list = Tag::element("Recent");
    for (const Tag& entry : entries_)
        list.addChild(entry);
    return list;
}

void RecentList::add(const Tag& data) {
    entries_.erase(std::remove(entries_.begin(), entries_.end(), data), entries_.end());
    entries_.push_back(data);
    trim();
}

void RecentList::trim() {
    std::int32_t limit = kDefaultItems;
    services_.getInterface().getProperty(Setting::kRecentItems, &limit);
    while (size() > std::max(limit, 0))
        entries_.pop_front();
}

} // namespace MVR
