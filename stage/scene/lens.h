#pragma once

#include <array>
#include <cstddef>

namespace Stage {

/// The animated numbers of a camera's lens, in this order everywhere: millimetres, scene units, a
/// plain number. All are above 0.
enum LensPart : std::size_t { kFocalLength, kFocusDistance, kFNumber };

using Lens = std::array<double, 3>;

inline constexpr Lens kDefaultLens = {35, 10, 5.6};
/// The height of the picture, 36 by 24 mm, which links the field of view to the focal length.
inline constexpr double kPictureHeightMm = 24;

/// Returns the vertical angle of the picture in radians.
double toFieldOfView(double focalLengthMm);
/// Returns the focal length in millimetres for a vertical angle between 0 and pi.
double toFocalLength(double fieldOfViewRadians);

/// Returns false for a number that a lens can't have.
[[nodiscard]] bool isLensNumber(double number);

} // namespace Stage
