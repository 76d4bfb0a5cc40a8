#include "motion.h"

#include <algorithm>
#include <charconv>
#include <cmath>
#include <cstdio>
#include <fstream>
#include <string_view>
#include <utility>

namespace {

constexpr double kSeconds = 30.0;
constexpr int kSamplesPerSecond = 100;
constexpr double kTwoPi = 6.283185307179586;

constexpr std::size_t kMaxSamples = 10'000'000;
constexpr std::size_t kMaxLineBytes = 1000;
constexpr std::size_t kNumbersPerLine = 8;
// Files hold rounded numbers.
constexpr double kRotationTolerance = 0.01;
// A packet that came late falls back by less; a clock that was set anew by more.
constexpr double kLatestPacketSeconds = 1.0;
constexpr double kFarthestSeconds = 1e12; // from 0; beyond it milliseconds get lost
constexpr double kGapSteps = 5.0;         // of the median length

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
        if (code != std::errc() || end != word.data() + word.size()) {
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

// Reads the samples of a file, line by line.
class MotionReader {
public:
    // Returns false, with a reason in `error`, for a line that is no sample.
    bool add(std::string_view line, std::string& error);
    // Counts the gaps when all lines are read. Returns false if there is no sample.
    bool finish(Motion& out, MotionNotes& notes);

private:
    double placeInTime(double fileSeconds);

    Motion motion_;
    MotionNotes notes_;
    double aheadSeconds_ = 0.0; // of the file's clock, after it began anew
};

bool MotionReader::add(std::string_view line, std::string& error) {
    std::array<double, kNumbersPerLine> n{};
    if (!readNumbers(line, n, error))
        return false;
    if (!(std::abs(n[0]) <= kFarthestSeconds)) {
        error = "the time is out of range";
        return false;
    }
    const double length = std::sqrt(n[4] * n[4] + n[5] * n[5] + n[6] * n[6] + n[7] * n[7]);
    const bool isFinite =
        std::all_of(n.begin(), n.end(), [](double each) { return std::isfinite(each); });
    if (!isFinite || length == 0.0) {
        ++notes_.dropouts;
        return true;
    }
    if (std::abs(length - 1.0) > kRotationTolerance) {
        error = "the quaternion's length isn't 1";
        return false;
    }
    if (motion_.size() == kMaxSamples) {
        error = "more than " + std::to_string(kMaxSamples) + " samples";
        return false;
    }
    motion_.push_back({placeInTime(n[0]), {n[1], n[2], n[3]}, {n[4], n[5], n[6], n[7]}});
    return true;
}

double MotionReader::placeInTime(double fileSeconds) {
    if (motion_.empty())
        return fileSeconds;
    const double before = motion_.back().timeSeconds;
    const double step = fileSeconds + aheadSeconds_ - before;
    if (step > 0.0)
        return before + step;
    ++(step == 0.0 ? notes_.equalTimes : notes_.fallingTimes);
    if (step < -kLatestPacketSeconds)
        aheadSeconds_ = before - fileSeconds;
    return before;
}

bool MotionReader::finish(Motion& out, MotionNotes& notes) {
    std::vector<double> steps;
    for (std::size_t i = 1; i < motion_.size(); ++i)
        steps.push_back(motion_[i].timeSeconds - motion_[i - 1].timeSeconds);
    if (!steps.empty()) {
        std::vector<double> sorted = steps;
        const auto middle = sorted.begin() + static_cast<std::ptrdiff_t>(sorted.size() / 2);
        std::nth_element(sorted.begin(), middle, sorted.end());
        for (const double step : steps) {
            if (*middle > 0.0 && step > kGapSteps * *middle) {
                ++notes_.gaps;
                notes_.longestGapSeconds = std::max(notes_.longestGapSeconds, step);
            }
        }
    }
    if (motion_.empty())
        return false;
    out = std::move(motion_);
    notes = notes_;
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

std::string MotionNotes::toText() const {
    if (equalTimes + fallingTimes + gaps + dropouts == 0)
        return {};
    char text[200];
    std::snprintf(
        text, sizeof text,
        "equal times %lld, falling times %lld, gaps %lld (longest %.3g s), samples without a "
        "pose %lld",
        equalTimes, fallingTimes, gaps, longestGapSeconds, dropouts);
    return text;
}

bool readMotion(const std::string& path, Motion& out, MotionNotes& notes, std::string& error) {
    std::ifstream file(path);
    if (!file) {
        error = path + ": can't be opened";
        return false;
    }
    MotionReader reader;
    std::array<char, kMaxLineBytes + 1> buffer;
    std::size_t number = 0;
    while (file.getline(buffer.data(), buffer.size())) {
        ++number;
        const auto length = static_cast<std::size_t>(file.gcount()) - (file.eof() ? 0 : 1);
        const std::string_view line(buffer.data(), length);
        const std::size_t start = line.find_first_not_of(" \t\r");
        if (start == std::string_view::npos || line[start] == '#')
            continue;
        if (!reader.add(line, error)) {
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
    if (!reader.finish(out, notes)) {
        error = path + ": holds no samples";
        return false;
    }
    return true;
}
