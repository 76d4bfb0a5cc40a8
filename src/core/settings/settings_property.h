// One setting of the user.
#pragma once

#include "core/settings/settings_manager.h"

#include <cstdint>
#include <string>
#include <utility>

namespace MVR {

/// A value with an id, and a node whose listeners hear when the user changes it (message 324,
/// wParam the id, lParam the property).
class SettingsManager::Property : public Util::DynamicObject, public Util::MessageNode {
public:
    explicit Property(std::int32_t id) : MessageNode("Configuration property"), id_(id) {}

    /// `value` points to a variable of the property's type. Both return true.
    virtual bool setValue(const void* value) = 0;
    virtual bool getValue(void* value) const = 0;
    /// Makes `out` the element that a settings file holds for this property.
    virtual void toTag(Tag& out) const;
    /// Reads the value from such an element; one without content leaves it unchanged. Returns false
    /// if `tag` isn't the element of this property. An element with an id below 0 is never read.
    virtual bool fromTag(const Tag& tag);

    std::int32_t getId() const { return id_; }

protected:
    /// Returns the value as a settings file holds it. Reading that text gives the same value again.
    virtual std::string getText() const = 0;
    /// Sets the value from text. Text that doesn't fit the type leaves it unchanged.
    virtual void setText(const Tag& content) = 0;

private:
    std::int32_t id_;
};

/// A property of type bool, std::int32_t, std::string or double.
template <class T>
class SettingsManager::Property_Primitive final
    : public SettingsManager::Property,
      public Util::DynamicCreator<SettingsManager::Property_Primitive<T>> {
public:
    Property_Primitive(std::int32_t id, T value) : Property(id), value_(std::move(value)) {}

    bool setValue(const void* value) override {
        value_ = *static_cast<const T*>(value);
        return true;
    }
    bool getValue(void* value) const override {
        *static_cast<T*>(value) = value_;
        return true;
    }

private:
    std::string getText() const override;
    void setText(const Tag& content) override;

    T value_;
};

extern template class SettingsManager::Property_Primitive<bool>;
extern template class SettingsManager::Property_Primitive<std::int32_t>;
extern template class SettingsManager::Property_Primitive<std::string>;
extern template class SettingsManager::Property_Primitive<double>;

} // namespace MVR
