#pragma once

#include <array>

/// The little geometry that a scene needs: vectors, quaternions, 4 by 4 matrices.
///
/// A matrix is 16 doubles, row after row; points are row vectors, so the translation is in row 3
/// and `multiply(child, parent)` transforms a child's matrix into its parent's space.
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

/// Returns the quaternion of length 1 in the same direction, or no rotation if there is none (it is
/// zero or not finite).
Quaternion normalised(const Quaternion& rotation);

/// Returns the rotation on the shorter path from `from` (fraction 0) to `to` (fraction 1),
/// length 1.
Quaternion slerp(const Quaternion& from, const Quaternion& to, double fraction);

/// Returns the matrix that scales, then rotates, then moves.
Matrix toMatrix(const Transform& transform);

/// Returns the parts of which `toMatrix` makes the matrix; shear is lost. A mirrored matrix has a
/// negative x scale.
Transform toTransform(const Matrix& matrix);

/// Returns false if any of its numbers is infinite or not a number.
[[nodiscard]] bool isFinite(const Transform& transform);

Matrix multiply(const Matrix& first, const Matrix& second);

/// Returns the inverse of a matrix that scales, rotates and moves, or the identity if it has none
/// because it flattens.
Matrix inverse(const Matrix& matrix);

} // namespace Stage
