#include "platform/choosers.h"

#include "platform/headless/state.h"

#include <algorithm>
#include <iterator>

namespace MVR::Platform {

namespace {

constexpr std::size_t kMostButtons = 3;
constexpr std::uint32_t kDefaultStep = kDefaultSecond;

/// By the low bits of the flags; 0 is no button.
constexpr std::int32_t kButtonSets[][kMostButtons] = {
    {kAnswerOk, 0, 0},
    {kAnswerOk, kAnswerCancel, 0},
    {kAnswerAbort, kAnswerRetry, kAnswerIgnore},
    {kAnswerYes, kAnswerNo, kAnswerCancel},
    {kAnswerYes, kAnswerNo, 0},
    {kAnswerRetry, kAnswerCancel, 0},
};

/// The button that Return would press; the first if the flags name one that isn't there.
std::int32_t defaultButton(const std::int32_t (&buttons)[kMostButtons], std::uint32_t flags) {
    const std::uint32_t index = (flags & kDefaultMask) / kDefaultStep;
    return index < kMostButtons && buttons[index] != 0 ? buttons[index] : buttons[0];
}

} // namespace

std::int32_t messageBox(WindowHandle owner, const std::string& text, const std::string& title,
                        std::uint32_t flags) {
    const std::uint32_t set = flags & kButtonsMask;
    if (set >= std::size(kButtonSets)) {
        return 0;
    }
    Headless::State& state = Headless::getState();
    const auto& buttons = kButtonSets[set];
    std::int32_t answer = defaultButton(buttons, flags);
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
