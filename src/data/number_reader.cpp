#include "data/number_reader.h"

#include <algorithm>
#include <charconv>

namespace MVR {

bool NumberReader::read(double& out) {
    if (failed_)
        return false;
    left_.remove_prefix(std::min(left_.find_first_not_of(" \t\n\v\f\r"), left_.size()));
    std::string_view number = left_;
    const bool hasPlus = !number.empty() && number.front() == '+';
    number.remove_prefix(hasPlus);
    // Words that stand for no finite number, and a second sign, are left to fail here.
    const std::size_t first = !hasPlus && !number.empty() && number.front() == '-' ? 1 : 0;
    failed_ = number.size() == first ||
              std::string_view("0123456789.").find(number[first]) == std::string_view::npos;
    if (failed_)
        return false;
    double value = 0.0;
    const auto [behind, code] =
        std::from_chars(number.data(), number.data() + number.size(), value);
    left_.remove_prefix(static_cast<std::size_t>(behind - left_.data()) *
                        (code != std::errc::invalid_argument));
    failed_ = code != std::errc();
    if (!failed_)
        out = value;
    return !failed_;
}

bool NumberReader::readNext(double& out) {
    if (read(out))
        return true;
    failed_ = false;
    left_.remove_prefix(left_.empty() ? 0 : 1);
    return read(out);
}

std::array<double, 3> readVector(std::string_view text) {
    std::array<double, 3> vector{};
    NumberReader reader(text);
    reader.read(vector[0]);
    reader.readNext(vector[1]);
    reader.readNext(vector[2]);
    return vector;
}

} // namespace MVR
