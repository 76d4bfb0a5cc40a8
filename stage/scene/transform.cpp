#include "stage/scene/transform.h"

#include <algorithm>
#include <cmath>
#include <cstddef>

namespace Stage {

namespace {

double dot(const Quaternion& a, const Quaternion& b) {
    return a[0] * b[0] + a[1] * b[1] + a[2] * b[2] + a[3] * b[3];
}

/// Returns the rotation of the 3 by 3 part `m`, whose rows have length 1.
Quaternion rotationOf(const Matrix& m) {
    // Find the largest component first: dividing by it stays exact if others are near 0.
    const double traces[4] = {m[0] - m[5] - m[10], m[5] - m[0] - m[10], m[10] - m[0] - m[5],
                              m[0] + m[5] + m[10]};
    int largest = 0;
    for (int i = 1; i < 4; ++i)
        if (traces[i] > traces[largest])
            largest = i;
    const double size = std::sqrt(1.0 + traces[largest]) * 0.5;
    const double part = 0.25 / size;
    switch (largest) {
    case 0:
        return {size, (m[1] + m[4]) * part, (m[2] + m[8]) * part, (m[6] - m[9]) * part};
    case 1:
        return {(m[1] + m[4]) * part, size, (m[6] + m[9]) * part, (m[8] - m[2]) * part};
    case 2:
        return {(m[2] + m[8]) * part, (m[6] + m[9]) * part, size, (m[1] - m[4]) * part};
    }
    return {(m[6] - m[9]) * part, (m[8] - m[2]) * part, (m[1] - m[4]) * part, size};
}

double determinant3(const Matrix& m) {
    return m[0] * (m[5] * m[10] - m[6] * m[9]) - m[1] * (m[4] * m[10] - m[6] * m[8]) +
           m[2] * (m[4] * m[9] - m[5] * m[8]);
}

} // namespace

Quaternion normalised(const Quaternion& rotation) {
    const double length = std::sqrt(dot(rotation, rotation));
    if (!(length > 0.0) || !std::isfinite(length))
        return kNoRotation;
    return {rotation[0] / length, rotation[1] / length, rotation[2] / length, rotation[3] / length};
}

Quaternion slerp(const Quaternion& from, const Quaternion& to, double fraction) {
    const Quaternion a = normalised(from);
    const Quaternion b = normalised(to);
    const double cosine = dot(a, b);
    const double sign = cosine < 0.0 ? -1.0 : 1.0;
    double weightA = 1.0 - fraction;
    double weightB = fraction;
    const double angle = std::acos(std::fmin(std::fabs(cosine), 1.0));
    const double sine = std::sin(angle);
    // For smaller angles the straight line is as good, and the division isn't.
    constexpr double kSmallSine = 1e-6;
    if (sine > kSmallSine) {
        weightA = std::sin(weightA * angle) / sine;
        weightB = std::sin(weightB * angle) / sine;
    }
    weightB *= sign;
    return normalised({a[0] * weightA + b[0] * weightB, a[1] * weightA + b[1] * weightB,
                       a[2] * weightA + b[2] * weightB, a[3] * weightA + b[3] * weightB});
}

Matrix toMatrix(const Transform& transform) {
    const auto [x, y, z, w] = normalised(transform.rotation);
    const auto& [sx, sy, sz] = transform.scale;
    const auto& [tx, ty, tz] = transform.position;
    return {(1 - 2 * (y * y + z * z)) * sx,
            2 * (x * y + z * w) * sx,
            2 * (x * z - y * w) * sx,
            0,
            2 * (x * y - z * w) * sy,
            (1 - 2 * (x * x + z * z)) * sy,
            2 * (y * z + x * w) * sy,
            0,
            2 * (x * z + y * w) * sz,
            2 * (y * z - x * w) * sz,
            (1 - 2 * (x * x + y * y)) * sz,
            0,
            tx,
            ty,
            tz,
            1};
}

Transform toTransform(const Matrix& matrix) {
    Transform result;
    result.position = {matrix[12], matrix[13], matrix[14]};
    Matrix rotation = matrix;
    for (std::size_t row = 0; row < 3; ++row) {
        double* axis = &rotation[row * 4];
        double length = std::hypot(axis[0], axis[1], axis[2]);
        if (row == 0 && determinant3(matrix) < 0.0)
            length = -length;
        result.scale[row] = length;
        for (int i = 0; i < 3; ++i)
            axis[i] = length != 0.0 ? axis[i] / length : 0.0;
    }
    result.rotation = normalised(rotationOf(rotation));
    return result;
}

bool isFinite(const Transform& transform) {
    const auto isWhole = [](const auto& numbers) {
        return std::all_of(numbers.begin(), numbers.end(),
                           [](double number) { return std::isfinite(number); });
    };
    return isWhole(transform.position) && isWhole(transform.rotation) && isWhole(transform.scale);
}

Matrix multiply(const Matrix& first, const Matrix& second) {
    Matrix result{};
    for (std::size_t row = 0; row < 4; ++row) {
        for (std::size_t column = 0; column < 4; ++column)
            for (std::size_t i = 0; i < 4; ++i)
                result[row * 4 + column] += first[row * 4 + i] * second[i * 4 + column];
    }
    return result;
}

Matrix inverse(const Matrix& m) {
    const double determinant = determinant3(m);
    if (determinant == 0.0)
        return toMatrix({});
    const double f = 1.0 / determinant;
    Matrix r = {(m[5] * m[10] - m[6] * m[9]) * f,
                (m[2] * m[9] - m[1] * m[10]) * f,
                (m[1] * m[6] - m[2] * m[5]) * f,
                0,
                (m[6] * m[8] - m[4] * m[10]) * f,
                (m[0] * m[10] - m[2] * m[8]) * f,
                (m[2] * m[4] - m[0] * m[6]) * f,
                0,
                (m[4] * m[9] - m[5] * m[8]) * f,
                (m[1] * m[8] - m[0] * m[9]) * f,
                (m[0] * m[5] - m[1] * m[4]) * f,
                0,
                0,
                0,
                0,
                1};
    for (std::size_t column = 0; column < 3; ++column)
        r[12 + column] = -(m[12] * r[column] + m[13] * r[4 + column] + m[14] * r[8 + column]);
    return r;
}

} // namespace Stage
