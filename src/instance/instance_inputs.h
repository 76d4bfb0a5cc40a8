// The inputs of one placed tool.
#pragma once

#include "data/kept_elements.h"
#include "data/sdk/tag.h"
#include "instance/input_property.h"
#include "unidevice/sdk/property_handler.h"

#include <cstdint>
#include <string>
#include <utility>
#include <vector>

namespace MVR {

/// The input properties of a tool, and their bindings and parameters as a profile.
class InstanceInputs {
public:
    /// What apply() returns for a tag that isn't a profile.
    static constexpr std::int32_t kNoProfile = 9999999;

    /// Returns the property of this name, which it makes if there is none. A new one gets what is
    /// kept for it.
    UniDevice::Property* add(const std::string& name, std::int32_t acceptedKinds);
    /// Adds the property by which a take moves the value of a spinner; `componentId` is that of the
    /// spinner in the panel.
    void addForSpinner(std::int32_t componentId, const std::string& label);
    /// Returns the property at `index`, which is below their count.
    [[nodiscard]] InputProperty& at(std::int32_t index) const {
        return own(*properties_.property(index));
    }
    /// In order of creation.
    [[nodiscard]] const UniDevice::PropertyHandler& getProperties() const { return properties_; }

    /// Returns a tag "profile" of the present bindings and parameters, and of what is kept; the
    /// parameters have all their digits if `isExact`, otherwise six.
    [[nodiscard]] Tag describe(const std::string& profileName, bool isExact) const;
    /// Replaces all bindings. What it can't apply is kept until the next profile: a control that
    /// isn't there, unless its property gets another meanwhile; a property that the tool doesn't
    /// have, until it has it; elements of unknown words. Returns the number of controls that were
    /// not found, or `kNoProfile`, with nothing changed.
    std::int32_t apply(const Tag& profile);

private:
    // add() makes them all.
    [[nodiscard]] static InputProperty& own(UniDevice::Property& property) {
        return static_cast<InputProperty&>(property);
    }
    [[nodiscard]] static Tag describeProperty(InputProperty& property, bool isExact);
    [[nodiscard]] static bool applyProperty(InputProperty& property, const Tag& entry);

    UniDevice::PropertyHandler properties_;
    KeptElements unknownProperties_;
    std::vector<std::pair<std::int32_t, UniDevice::Property*>> spinnerProperties_; // component ids
};

} // namespace MVR
