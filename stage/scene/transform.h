#pragma once

#include <array>

/// The little geometry that a scene needs: vectors, quaternions, 4 by 4 matrices.
///
/// A matrix is 16 doubles, row after row; points are row vectors, so that the translation stands in
/// row 3 and `multiply(child, parent)` takes a child's matrix into its parent's space.
namespace Stage {

using Vector3 = std::array<double, 3>;
using Quaternion = std::array<double, 4>; ///< x, y, z, w
using Matrix = std::array<double, 16>;

inline constexpr Vector3 kNoMove = {0, 0, 0};
inline constexpr Vector3 kNoScale = {1, 1, 1};
inline constexpr Quaternion kNoRotation = {0, 0, 0, 1};

struct Transform {
    Vector3 position = kNoMove;
    Quaternion rotation = kNoRotation; ///< any length; read as a direction
    Vector3 scale = kNoScale;

    bool operator==(const Transform& other) const = default;
};

/// The quaternion of length 1 in the same direction; no rotation if there is none (zero, or no
/// finite numbers).
Quaternion normalised(const Quaternion& rotation);

/// The rotation on the shorter way from `from` (fraction 0) to `to` (fraction 1), length 1.
Quaternion slerp(const Quaternion& from, const Quaternion& to, double fraction);

/// Scale, then rotation, then move.
Matrix toMatrix(const Transform& transform);

/// The parts that `toMatrix` would make the matrix of; shear is lost. A mirrored matrix gives a
/// negative x scale.
Transform toTransform(const Matrix& matrix);

/// False if a number of it is infinite or none at all.
[[nodiscard]] bool isFinite(const Transform& transform);

Matrix multiply(const Matrix& first, const Matrix& second);

/// The inverse of a matrix that scales, rotates and moves; one that flattens has none, and gives
/// the identity.
Matrix inverse(const Matrix& matrix);

} // namespace Stage
