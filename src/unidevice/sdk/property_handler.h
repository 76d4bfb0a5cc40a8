#pragma once

#include "core/util/sdk/dynamic_object.h"
#include "unidevice/sdk/property.h"

#include <cstdint>
#include <memory>
#include <string>
#include <vector>

namespace UniDevice {

/// The properties of one tool instance, in order of creation. Owns them. All operations may be
/// called as long as it lives. Host thread only.
class PropertyHandler : public MVR::Util::DynamicObject {
public:
    PropertyHandler() = default;
    PropertyHandler(const PropertyHandler&) = delete;
    PropertyHandler& operator=(const PropertyHandler&) = delete;

    /// The property at `index`, null when out of range.
    [[nodiscard]] Property* property(std::int32_t index) const;

    /// The first property of this name, null if there is none.
    [[nodiscard]] Property* property(const std::string& name) const;

    /// The property of this name, or a new one that `factory` makes, at the end. Null only if the
    /// factory makes none.
    Property* getOrCreate(const std::string& name, std::int32_t acceptedKinds,
                          const Property::Factory& factory);

    [[nodiscard]] std::int32_t count() const;

private:
    struct Entry {
        std::string name;
        std::unique_ptr<Property> property;
    };
    std::vector<Entry> entries_;
};

} // namespace UniDevice
