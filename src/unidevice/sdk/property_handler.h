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
///
/// A name that a file can't hold as it is has "_" for each control character and each ">", in the
/// property as in what is looked up; the log has a line when such a property is created.
class PropertyHandler : public MVR::Util::DynamicObject {
public:
    PropertyHandler() = default;
    PropertyHandler(const PropertyHandler&) = delete;
    PropertyHandler& operator=(const PropertyHandler&) = delete;

    /// Returns the property at `index`, or null if `index` is out of range.
    [[nodiscard]] Property* property(std::int32_t index) const;

    /// Returns the first property of this name, or null if there is none.
    [[nodiscard]] Property* property(const std::string& name) const;

    /// Returns the property of this name, or a new one that `factory` creates, at the end. Returns
    /// null only if the factory does.
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
