#include "platform/choosers.h"

#include "platform/headless/state.h"

#include <algorithm>
#include <iterator>

namespace MVR::Platform {

std::int32_t messageBox(WindowHandle owner, const std::string& text, const std::string& title,
                        std::uint32_t flags) {
    const std::uint32_t set = flags & kButtonsMask;
    if (set >= kButtonSetCount) {
        return 0;
    }
    Headless::State& state = Headless::getState();
    const auto& buttons = kButtonSets[set];
    std::int32_t answer = defaultAnswer(flags);
    if (!state.messageBoxAnswers.empty()) {
        const std::int32_t scripted = state.messageBoxAnswers.front();
        state.messageBoxAnswers.pop_front();
        if (scripted != 0 &&
            std::find(std::begin(buttons), std::end(buttons), scripted) != std::end(buttons)) {
            answer = scripted;
        }
    }
    state.messageBoxes.push_back({owner, text, title, flags, answer});
    if (state.messageBoxes.size() > Headless::kMessageBoxesKept) {
        state.messageBoxes.pop_front();
    }
    return answer;
}

} // namespace MVR::Platform
