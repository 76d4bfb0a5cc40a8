#pragma once

#include <array>
#include <cstddef>

namespace Stage {

/// The animated numbers of a camera's lens, in this order everywhere: millimetres, scene units, a
/// plain number. All are above 0.
enum LensPart : std::size_t { kFocalLength, kFocusDistance, kFNumber };

using Lens = std::array<double, 3>;

inline constexpr Lens kDefaultLens = {35, 10, 5.6};
/// The height of the picture, 36 by 24 mm, which rules what field of view a focal length gives.
inline constexpr double kPictureHeightMm = 24;

/// The upright angle of the picture in radians.
double toFieldOfView(double focalLengthMm);
/// The focal length in millimetres that gives an upright angle between 0 and pi.
double toFocalLength(double fieldOfViewRadians);

/// False for a number that no lens has.
[[nodiscard]] bool isLensNumber(double number);

} // namespace Stage
