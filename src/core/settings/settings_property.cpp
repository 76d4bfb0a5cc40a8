#include "core/settings/settings_property.h"

#include <charconv>
#include <type_traits>

namespace MVR {

void SettingsManager::Property::toTag(Tag& out) const {
    out = Tag::element("element", getText());
    out.attributeRef("id") = std::to_string(id_);
}

bool SettingsManager::Property::fromTag(const Tag& tag) {
    std::int32_t id = -1;
    if (!tag.hasName("element") || !Tag::textNode(tag.attribute("id")).as(id) || id < 0 ||
        id != id_)
        return false;
    if (tag.childCount() > 0)
        setText(tag.child(0));
    return true;
}

template <class T>
std::string SettingsManager::Property_Primitive<T>::getText() const {
    if constexpr (std::is_same_v<T, std::string>) {
        return value_;
    } else if constexpr (std::is_same_v<T, bool>) {
        return value_ ? "1" : "0";
    } else {
        char text[32]; // the longest double, "-1.7976931348623157e+308", has 24
        return std::string(text, std::to_chars(text, text + sizeof(text), value_).ptr);
    }
}

template <class T>
void SettingsManager::Property_Primitive<T>::setText(const Tag& content) {
    if constexpr (std::is_same_v<T, std::string>)
        value_ = content.name();
    else
        content.as(value_);
}

template class SettingsManager::Property_Primitive<bool>;
template class SettingsManager::Property_Primitive<std::int32_t>;
template class SettingsManager::Property_Primitive<std::string>;
template class SettingsManager::Property_Primitive<double>;

} // namespace MVR
