#include "plugins/contract/transform_matrix.h"

#include "data/little_endian.h"
#include "data/number_reader.h"
#include "data/sdk/base64_buffer.h"

#include <algorithm>
#include <cmath>
#include <cstring>

namespace MVR {
namespace {

using Vector = std::array<double, 3>;

constexpr std::size_t kBinarySize = sizeof(Matrix);
constexpr double kRadiansPerDegree = 0.017453292519943295;

bool readBinary(const std::string& value, Matrix& matrix) {
    const Base64Buffer bytes(value);
    if (bytes.size() != kBinarySize)
        return false;
    for (std::size_t i = 0; i < matrix.size(); ++i)
        matrix[i] = loadLittleDouble(bytes.data() + i * sizeof(double));
    return true;
}

bool readText(const std::string& value, Matrix& matrix) {
    NumberReader reader(value);
    bool isWhole = reader.read(matrix[0]);
    for (std::size_t i = 1; i < matrix.size(); ++i)
        isWhole = reader.readNext(matrix[i]) && isWhole;
    return isWhole;
}

Matrix rotation(const Vector& axis, double degrees) {
    const auto [x, y, z] = axis;
    const double angle = degrees * kRadiansPerDegree;
    const double c = std::cos(angle);
    const double s = std::sin(angle);
    const double t = 1.0 - c;
    return {x * x * t + c,
            x * y * t + s * z,
            x * z * t - s * y,
            0.0, //
            x * y * t - s * z,
            y * y * t + c,
            y * z * t + s * x,
            0.0, //
            x * z * t + s * y,
            y * z * t - s * x,
            z * z * t + c,
            0.0, //
            0.0,
            0.0,
            0.0,
            1.0};
}

// What a component does alone; the identity for a child of another name.
Matrix componentMatrix(const Tag& component) {
    Matrix matrix = kIdentityMatrix;
    const Vector vector = readVector(component.value());
    if (component.hasName("rotate")) {
        double degrees = 0.0;
        NumberReader(component.attribute("angle")).read(degrees);
        matrix = rotation(vector, degrees);
    } else if (component.hasName("scale")) {
        for (std::size_t i = 0; i < 3; ++i)
            matrix[5 * i] = vector[i];
    } else if (component.hasName("translate")) {
        for (std::size_t i = 0; i < 3; ++i)
            matrix[12 + i] = vector[i];
    }
    return matrix;
}

Matrix readComponents(const Tag& tag) {
    Matrix matrix = kIdentityMatrix;
    for (std::int32_t i = 0; i < tag.childCount(); ++i)
        matrix = multiply(componentMatrix(tag.child(i)), matrix);
    return matrix;
}

} // namespace

Matrix multiply(const Matrix& a, const Matrix& b) {
    Matrix product{};
    for (std::size_t i = 0; i < 4; ++i)
        for (std::size_t j = 0; j < 4; ++j)
            for (std::size_t k = 0; k < 4; ++k)
                product[4 * i + j] += a[4 * i + k] * b[4 * k + j];
    return product;
}

Matrix readMatrix(const Tag& tag) {
    Matrix matrix;
    (void)readMatrix(tag, matrix);
    return matrix;
}

bool readMatrix(const Tag& tag, Matrix& out) {
    out = kIdentityMatrix;
    const std::string format = tag.attribute("format");
    const std::string& value = tag.value();
    if (format == "binary")
        return readBinary(value, out);
    if (format == "text")
        return readText(value, out);
    if (format != "component" && !value.empty())
        return value.find(',') != std::string::npos ? readText(value, out) : readBinary(value, out);
    out = readComponents(tag);
    return true;
}

bool isFinite(const Matrix& matrix) {
    return std::all_of(
        matrix.begin(), matrix.end(), [](double number) { return std::isfinite(number); });
}

Tag writeMatrix(const Matrix& matrix) {
    std::array<std::uint8_t, kBinarySize> bytes;
    for (std::size_t i = 0; i < matrix.size(); ++i)
        storeLittleDouble(bytes.data() + i * sizeof(double), matrix[i]);
    return Tag::element("transform", Base64Buffer(bytes.data(), bytes.size()).toText());
}

} // namespace MVR
