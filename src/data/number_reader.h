#pragma once

#include <array>
#include <string_view>

namespace MVR {

// Reads numbers one after another from text as a stream of the classic locale does, whatever locale
// the process has set. Infinities and NaN are no numbers. A number that can't be read leaves `out`
// unchanged.
class NumberReader {
public:
    explicit NumberReader(std::string_view text) : left_(text) {}

    // Returns false once there is no number, and from then on.
    bool read(double& out);
    // If there is no number, skips one character and tries again, so "1,2", "1;2" and "1 2" read
    // alike.
    bool readNext(double& out);

private:
    std::string_view left_;
    bool failed_ = false;
};

// Three numbers; those that are missing are 0.
std::array<double, 3> readVector(std::string_view text);

} // namespace MVR
