// The words of bindings in a preset, a model or a scene: elements, and the attributes that name
// things in them.
#pragma once

namespace UniDevice::BindingWord {

/// The element of one property, in an element "profile"; kName is its attribute.
constexpr const char* kProperty = "property";
constexpr const char* kName = "name";

/// In kProperty: the mapping of the control's value, an element with a number each.
constexpr const char* kMultiplier = "multiplier";
constexpr const char* kExponent = "exponent";
constexpr const char* kDeadzone = "deadzone";
constexpr const char* kOffset = "offset";

/// In kProperty: the element of the control that drives it, with the attributes kDevice, kType,
/// kIndex and, for a second device of the same name, kDeviceIndex.
constexpr const char* kControl = "control";
constexpr const char* kDevice = "device";
constexpr const char* kDeviceIndex = "devindex";
constexpr const char* kType = "type";
constexpr const char* kIndex = "index";

} // namespace UniDevice::BindingWord
