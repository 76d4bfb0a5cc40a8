#include "motion.h"

#include <charconv>
#include <cmath>
#include <fstream>
#include <string_view>

namespace {

constexpr double kSeconds = 30.0;
constexpr int kSamplesPerSecond = 100;
constexpr double kTwoPi = 6.283185307179586;

constexpr std::size_t kMaxSamples = 10'000'000;
constexpr std::size_t kMaxLineBytes = 1000;
constexpr std::size_t kNumbersPerLine = 8;
// Files hold rounded numbers.
constexpr double kRotationTolerance = 0.01;

// Wanders smoothly between about -1 and 1: whole numbers of waves in `kSeconds`, from slow sway to
// the tremor of a hand, each weaker than the one before. Each `channel` wanders in its own way.
double wander(double timeSeconds, int channel) {
    constexpr int kWaves[] = {2, 5, 9, 17, 31, 58, 110, 203};
    constexpr double kGoldenRatio = 0.6180339887498949;
    double sum = 0.0;
    double weight = 0.5;
    int number = channel * 8;
    for (int waves : kWaves) {
        const double phase = std::fmod(++number * kGoldenRatio, 1.0);
        sum += weight * std::sin(kTwoPi * (waves * timeSeconds / kSeconds + phase));
        weight *= 0.55;
    }
    return sum;
}

// Rotations about y, then x, then z, in radians.
std::array<double, 4> quaternion(double pan, double tilt, double roll) {
    const double cy = std::cos(pan / 2), sy = std::sin(pan / 2);
    const double cx = std::cos(tilt / 2), sx = std::sin(tilt / 2);
    const double cz = std::cos(roll / 2), sz = std::sin(roll / 2);
    return {cy * sx * cz + sy * cx * sz, sy * cx * cz - cy * sx * sz, cy * cx * sz - sy * sx * cz,
            cy * cx * cz + sy * sx * sz};
}

// Reads the numbers of a line. Returns false, with a reason in `error`, if the line isn't made of
// exactly eight.
bool readNumbers(std::string_view line, std::array<double, kNumbersPerLine>& numbers,
                 std::string& error) {
    constexpr std::string_view kBlanks = " \t\r";
    std::size_t count = 0;
    while (true) {
        const std::size_t start = line.find_first_not_of(kBlanks);
        if (start == std::string_view::npos)
            break;
        line.remove_prefix(start);
        const std::string_view word = line.substr(0, line.find_first_of(kBlanks));
        line.remove_prefix(word.size());
        double number = 0.0;
        const auto [end, code] = std::from_chars(word.data(), word.data() + word.size(), number);
        if (code != std::errc() || end != word.data() + word.size() || !std::isfinite(number)) {
            error = "not a number: " + std::string(word.substr(0, 40));
            return false;
        }
        if (count < kNumbersPerLine)
            numbers[count] = number;
        ++count;
    }
    if (count != kNumbersPerLine) {
        error = "expected 8 numbers, time x y z qx qy qz qw, found " + std::to_string(count);
        return false;
    }
    return true;
}

bool addSample(std::string_view line, Motion& motion, std::string& error) {
    std::array<double, kNumbersPerLine> n{};
    if (!readNumbers(line, n, error))
        return false;
    if (!motion.empty() && n[0] <= motion.back().timeSeconds) {
        error = "the time isn't later than the one before";
        return false;
    }
    const double length = std::sqrt(n[4] * n[4] + n[5] * n[5] + n[6] * n[6] + n[7] * n[7]);
    if (std::abs(length - 1.0) > kRotationTolerance) {
        error = "the quaternion's length isn't 1";
        return false;
    }
    if (motion.size() == kMaxSamples) {
        error = "more than " + std::to_string(kMaxSamples) + " samples";
        return false;
    }
    motion.push_back({n[0], {n[1], n[2], n[3]}, {n[4], n[5], n[6], n[7]}});
    return true;
}

} // namespace

Motion makeHandheldMotion() {
    constexpr int kCount = static_cast<int>(kSeconds) * kSamplesPerSecond;
    Motion motion;
    motion.reserve(kCount);
    for (int i = 0; i < kCount; ++i) {
        const double t = static_cast<double>(i) / kSamplesPerSecond;
        // Metres about a point at eye height, and angles of a few degrees.
        motion.push_back(
            {t,
             {0.30 * wander(t, 0), 1.6 + 0.12 * wander(t, 1), 0.20 * wander(t, 2)},
             quaternion(0.25 * wander(t, 3), 0.12 * wander(t, 4), 0.05 * wander(t, 5))});
    }
    return motion;
}

bool readMotion(const std::string& path, Motion& out, std::string& error) {
    std::ifstream file(path);
    if (!file) {
        error = path + ": can't be opened";
        return false;
    }
    Motion motion;
    std::array<char, kMaxLineBytes + 1> buffer;
    std::size_t number = 0;
    while (file.getline(buffer.data(), buffer.size())) {
        ++number;
        const auto length = static_cast<std::size_t>(file.gcount()) - (file.eof() ? 0 : 1);
        const std::string_view line(buffer.data(), length);
        const std::size_t start = line.find_first_not_of(" \t\r");
        if (start == std::string_view::npos || line[start] == '#')
            continue;
        if (!addSample(line, motion, error)) {
            error = path + ":" + std::to_string(number) + ": " + error;
            return false;
        }
    }
    if (file.bad()) {
        error = path + ": can't be read";
        return false;
    }
    if (!file.eof()) {
        error = path + ":" + std::to_string(number + 1) + ": the line has more than " +
                std::to_string(kMaxLineBytes) + " bytes";
        return false;
    }
    if (file.bad() || motion.empty()) {
        error = path + (motion.empty() ? ": holds no samples" : ": reading failed");
        return false;
    }
    out = std::move(motion);
    return true;
}
