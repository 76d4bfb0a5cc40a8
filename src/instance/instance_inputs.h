/// \file
/// The inputs of one placed tool.
#pragma once

#include "data/sdk/tag.h"
#include "unidevice/sdk/property_handler.h"

#include <cstdint>
#include <string>
#include <utility>
#include <vector>

namespace MVR {

/// The input properties of a tool, and their bindings and parameters as a profile.
class InstanceInputs {
public:
    /// What apply() returns for a tag that is no profile.
    static constexpr std::int32_t kNoProfile = 9999999;

    /// Returns the property of this name, which it makes if there is none.
    UniDevice::Property* add(const std::string& name, std::int32_t acceptedKinds);
    /// Adds the property by which a take moves the value of a spinner; `componentId` is that of the
    /// spinner in the panel.
    void addForSpinner(std::int32_t componentId, const std::string& label);
    /// In order of creation.
    [[nodiscard]] const UniDevice::PropertyHandler& getProperties() const { return properties_; }

    /// Returns a tag "profile" of the present bindings and parameters.
    [[nodiscard]] Tag describe(const std::string& profileName, bool isExact) const;
    /// Replaces all bindings. Returns the number of controls that were not found, or `kNoProfile`,
    /// with nothing changed.
    std::int32_t apply(const Tag& profile);

private:
    UniDevice::PropertyHandler properties_;
    std::vector<std::pair<std::int32_t, UniDevice::Property*>> spinnerProperties_; // component ids
};

} // namespace MVR
