// A file of a camera's movement. What is accepted is finite and never goes back in time; the rest
// is refused as a whole, with a reason.

#include "input_file.h"
#include "motion.h"

#include <cmath>
#include <cstdlib>

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    Motion motion;
    MotionNotes notes;
    std::string error;
    if (!readMotion(writeInput(data, size), motion, notes, error)) {
        if (error.empty() || !motion.empty())
            std::abort();
        return 0;
    }
    const MotionSample* before = nullptr;
    for (const MotionSample& sample : motion) {
        bool isGood = std::isfinite(sample.timeSeconds) &&
                      (before == nullptr || sample.timeSeconds >= before->timeSeconds);
        for (const double number : sample.position)
            isGood = isGood && std::isfinite(number);
        for (const double number : sample.rotation)
            isGood = isGood && std::abs(number) < 1.1;
        if (!isGood)
            std::abort();
        before = &sample;
    }
    return motion.empty() ? std::abort(), 0 : 0;
}
