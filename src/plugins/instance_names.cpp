#include "plugins/instance_names.h"

#include "data/writable_name.h"

#include <algorithm>
#include <charconv>

namespace MVR {

namespace {

bool isDigit(char character) {
    return character >= '0' && character <= '9';
}

bool endsInTwoDigits(const std::string& name) {
    const std::size_t size = name.size();
    return size > 2 && name[size - 3] == '_' && isDigit(name[size - 2]) && isDigit(name[size - 1]);
}

std::string numbered(const std::string& base, std::int32_t number) {
    return base + (number < 10 ? "_0" : "_") + std::to_string(number);
}

} // namespace

void InstanceNames::add(const std::string& name) {
    ++uses_[name];
}

void InstanceNames::remove(const std::string& name) {
    const auto found = uses_.find(name);
    if (--found->second > 0)
        return;
    uses_.erase(found);
    lowerHints(name);
}

std::string InstanceNames::makeUnique(const std::string& given) {
    const std::string wanted = adoptName(given);
    if (!isUsed(wanted))
        return wanted;
    std::string base = wanted;
    std::int32_t number = 1;
    // A base may itself end in such a suffix: one more is removed at each clash.
    while (endsInTwoDigits(base)) {
        base.resize(base.size() - 3);
        const std::string name = numbered(base, number++);
        if (!isUsed(name))
            return name;
    }
    return numbered(base, firstFree(base, number));
}

std::int32_t InstanceNames::firstFree(const std::string& base, std::int32_t start) {
    std::vector<Hint>& hints = hints_[base];
    auto hint = std::find_if(hints.begin(), hints.end(),
                             [start](const Hint& each) { return each.start == start; });
    if (hint == hints.end())
        hint = hints.insert(hints.end(), {start, start});
    while (isUsed(numbered(base, hint->lowest)))
        ++hint->lowest;
    const std::int32_t free = hint->lowest;
    if (free == start) {
        hints.erase(hint);
        if (hints.empty())
            hints_.erase(base);
    }
    return free;
}

/// A number that becomes free is the lowest of its base, unless a lower one is known.
void InstanceNames::lowerHints(std::string_view name) {
    const std::size_t mark = name.rfind('_');
    if (mark == std::string_view::npos || name.size() - mark < 3)
        return;
    std::int32_t number = 0;
    const char* const end = name.data() + name.size();
    const auto parsed = std::from_chars(name.data() + mark + 1, end, number);
    const std::string base(name.substr(0, mark));
    if (parsed.ec != std::errc() || parsed.ptr != end || numbered(base, number) != name)
        return;
    const auto found = hints_.find(base);
    if (found == hints_.end())
        return;
    std::vector<Hint>& hints = found->second;
    for (Hint& hint : hints)
        if (hint.start <= number && number < hint.lowest)
            hint.lowest = number;
    hints.erase(std::remove_if(hints.begin(), hints.end(),
                               [](const Hint& hint) { return hint.lowest == hint.start; }),
                hints.end());
    if (hints.empty())
        hints_.erase(found);
}

} // namespace MVR
