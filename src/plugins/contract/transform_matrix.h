#pragma once

#include "data/sdk/tag.h"

#include <array>

namespace MVR {

/// A transform: 4 by 4, by the conventions of snapshots.h. The functions here may be called at any
/// time, on any thread.
using Matrix = std::array<double, 16>;

inline constexpr Matrix kIdentityMatrix{1, 0, 0, 0, 0, 1, 0, 0, 0, 0, 1, 0, 0, 0, 0, 1};

/// Returns the transform that is first `a`, then `b`.
Matrix multiply(const Matrix& a, const Matrix& b);

/// Reads an element in one of three forms, which the attribute "format" names. Without a known name
/// a value with "," is text, any other value binary, and no value components.
/// - "binary": base64 of the 16 doubles. Any other size results in the identity.
/// - "text": 16 numbers with one character or blanks between them; those that are missing are the
///   identity's.
/// - "component": children "rotate" (attribute "angle" in degrees, value: the axis, used as it is),
///   "scale" and "translate" (value: a vector). The last child acts first on a point.
Matrix readMatrix(const Tag& tag);

/// The same into `out`. Returns false if a binary value has another size or a text too few numbers.
[[nodiscard]] bool readMatrix(const Tag& tag, Matrix& out);

/// Returns false if one of the numbers is infinite or not a number: no object can be there.
[[nodiscard]] bool isFinite(const Matrix& matrix);

/// Returns an element "transform" in the binary form, without attributes.
Tag writeMatrix(const Matrix& matrix);

} // namespace MVR
