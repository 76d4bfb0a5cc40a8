#include "unidevice/sdk/property_handler.h"

#include "data/writable_name.h"

namespace UniDevice {

Property* PropertyHandler::property(std::int32_t index) const {
    return index >= 0 && index < count() ? entries_[index].property.get() : nullptr;
}

Property* PropertyHandler::property(const std::string& name) const {
    for (const Entry& entry : entries_)
        if (entry.name == name)
            return entry.property.get();
    const std::string writable = MVR::writableName(name);
    return writable != name ? property(writable) : nullptr;
}

Property* PropertyHandler::getOrCreate(const std::string& name, std::int32_t acceptedKinds,
                                       const Property::Factory& factory) {
    if (Property* existing = property(name))
        return existing;
    const std::string writable = MVR::adoptName(name);
    std::unique_ptr<Property> made(factory.create(writable, acceptedKinds));
    if (!made)
        return nullptr;
    entries_.push_back({writable, std::move(made)});
    return entries_.back().property.get();
}

std::int32_t PropertyHandler::count() const {
    return static_cast<std::int32_t>(entries_.size());
}

} // namespace UniDevice
