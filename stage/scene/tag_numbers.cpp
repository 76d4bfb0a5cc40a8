#include "stage/scene/tag_numbers.h"

#include "stage/base/text.h"

#include <algorithm>
#include <charconv>
#include <cmath>
#include <cstddef>

namespace Stage {

namespace {

constexpr std::size_t kMostShown = 40; // bytes of a text in a message

} // namespace

MVR::Tag toTag(const char* word, std::span<const double> numbers) {
    std::string text;
    for (const double number : numbers)
        text += (text.empty() ? "" : " ") + toText(number);
    return MVR::Tag::element(word, text);
}

bool readNumbers(const MVR::Tag& tag, const char* word, std::span<double> out,
                 std::string& reason) {
    const std::string name = std::string("\"") + word + "\"";
    const MVR::Tag& element = tag.child(word);
    if (element.isEmpty()) {
        reason = "it has no " + name;
        return false;
    }
    std::string_view text = element.value();
    for (double& number : out) {
        if (!takeNumber(text, number) || !std::isfinite(number)) {
            reason = name + " must hold " + std::to_string(out.size()) +
                     (out.size() == 1 ? " number, not " : " numbers, not ") +
                     shown(element.value());
            return false;
        }
    }
    if (!trimmed(text).empty()) {
        reason = name + " holds " + shown(trimmed(text)) + " after its numbers";
        return false;
    }
    return true;
}

bool takeNumber(std::string_view& text, double& out) {
    const std::size_t blanks = std::min(text.find_first_not_of(" \t\r\n"), text.size());
    text.remove_prefix(blanks);
    const auto [end, fault] = std::from_chars(text.data(), text.data() + text.size(), out);
    if (fault != std::errc())
        return false;
    text.remove_prefix(static_cast<std::size_t>(end - text.data()));
    return true;
}

std::string shown(std::string_view text) {
    const bool isLong = text.size() > kMostShown;
    return "\"" + toUtf8(text.substr(0, kMostShown)) + (isLong ? "...\"" : "\"");
}

} // namespace Stage
