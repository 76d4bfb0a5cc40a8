#include "data/number_reader.h"

#include <algorithm>
#include <charconv>

namespace MVR {
namespace {

bool isSign(char c) {
    return c == '+' || c == '-';
}

// The number of characters that a stream consumes as a number, even if they turn out to be none,
// such as "-" or "1e".
std::size_t numberSize(std::string_view text) {
    bool hasDigit = false;
    bool hasPoint = false;
    bool hasExponent = false;
    std::size_t at = !text.empty() && isSign(text[0]) ? 1 : 0;
    for (; at < text.size(); ++at) {
        const char c = text[at];
        if (c >= '0' && c <= '9') {
            hasDigit = true;
        } else if (c == '.' && !hasPoint && !hasExponent) {
            hasPoint = true;
        } else if ((c == 'e' || c == 'E') && hasDigit && !hasExponent) {
            hasExponent = true;
            at += at + 1 < text.size() && isSign(text[at + 1]) ? 1 : 0;
        } else {
            break;
        }
    }
    return at;
}

} // namespace

bool NumberReader::read(double& out) {
    if (failed_)
        return false;
    left_.remove_prefix(std::min(left_.find_first_not_of(" \t\n\v\f\r"), left_.size()));
    std::string_view number = left_.substr(0, numberSize(left_));
    left_.remove_prefix(number.size());
    number.remove_prefix(!number.empty() && number.front() == '+');
    double value = 0.0;
    const char* const end = number.data() + number.size();
    const auto [behind, code] = std::from_chars(number.data(), end, value);
    failed_ = code != std::errc() || behind != end;
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
