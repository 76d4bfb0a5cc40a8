#include "stage/base/log_lines.h"

#include "core/base/sdk/log.h"
#include "stage/base/text.h"

#include <algorithm>
#include <string_view>

namespace Stage {

LogLines::LogLines() : begin_(MVR::Log::getText().size()) {}

std::vector<std::string> LogLines::getFaults() const {
    const std::string text = MVR::Log::getText();
    std::string_view rest = std::string_view(text).substr(std::min(begin_, text.size()));
    std::vector<std::string> faults;
    while (!rest.empty()) {
        const std::string_view line = rest.substr(0, rest.find('\n'));
        rest.remove_prefix(std::min(line.size() + 1, rest.size()));
        for (const std::string_view level : {" (CRITICAL): ", " (ERROR): ", " (WARNING): "}) {
            // The date stands in front, and has no brackets.
            const std::size_t place = line.find(level);
            if (place == std::string_view::npos || place != line.find(" (")) {
                continue;
            }
            const std::string fault(trimmed(line.substr(place + level.size())));
            const bool isRepeated = fault.rfind("Return value: ", 0) == 0 ||
                                    std::find(faults.begin(), faults.end(), fault) != faults.end();
            if (!isRepeated) {
                faults.push_back(fault);
            }
        }
    }
    const auto isNamed = [](const std::string& fault) {
        return fault.rfind("Model ", 0) == 0 && fault.find(", tool ") != std::string::npos;
    };
    if (std::any_of(faults.begin(), faults.end(), isNamed)) {
        std::erase_if(faults, [&isNamed](const std::string& fault) {
            return !isNamed(fault) && fault.rfind(kMergeFault, 0) != 0;
        });
    }
    return faults;
}

} // namespace Stage
