#include "platform/choosers.h"

#include "platform/headless/state.h"

#include <algorithm>
#include <cstddef>
#include <iterator>
#include <utility>

namespace MVR::Platform {

std::int32_t messageBox(WindowHandle owner, const std::string& text, const std::string& title,
                        std::uint32_t flags) {
    const std::uint32_t set = flags & kButtonsMask;
    if (set >= kButtonSetCount)
        return 0;
    Headless::State& state = Headless::getState();
    const auto& buttons = kButtonSets[set];
    std::int32_t answer = defaultAnswer(flags);
    if (!state.messageBoxAnswers.empty()) {
        const std::int32_t scripted = state.messageBoxAnswers.front();
        state.messageBoxAnswers.pop_front();
        if (scripted != 0 &&
            std::find(std::begin(buttons), std::end(buttons), scripted) != std::end(buttons))
            answer = scripted;
    }
    state.messageBoxes.push_back({owner, text, title, flags, answer});
    if (state.messageBoxes.size() > Headless::kMessageBoxesKept)
        state.messageBoxes.pop_front();
    return answer;
}

namespace {

std::string chooseFile(const FileChooser& chooser, bool isSave) {
    Headless::State& state = Headless::getState();
    std::string answer;
    if (!state.fileAnswers.empty()) {
        answer = std::move(state.fileAnswers.front());
        state.fileAnswers.pop_front();
    }
    const std::size_t name = answer.find_last_of("/\\") + 1; // 0 without a folder
    if (name < answer.size() && !chooser.extension.empty() &&
        answer.find('.', name) == std::string::npos)
        answer += "." + chooser.extension;
    state.fileChoosers.push_back({chooser, isSave, answer});
    if (state.fileChoosers.size() > Headless::kFileChoosersKept)
        state.fileChoosers.pop_front();
    return answer;
}

} // namespace

namespace {

bool canBeChosen(const std::vector<MenuItem>& items, std::int32_t command) {
    return std::any_of(
        items.begin(), items.end(),
        [command](const MenuItem& item) {
            return !item.isGreyed && (item.items.empty() ? item.command == command
                                                         : canBeChosen(item.items, command));
        });
}

} // namespace

std::int32_t chooseFromMenu(WindowHandle, const std::vector<MenuItem>& items) {
    Headless::State& state = Headless::getState();
    state.lastMenu = items;
    std::int32_t answer = 0;
    if (!state.menuAnswers.empty()) {
        answer = state.menuAnswers.front();
        state.menuAnswers.pop_front();
    }
    return canBeChosen(items, answer) ? answer : 0;
}

std::string chooseFileToOpen(WindowHandle, const FileChooser& chooser) {
    return chooseFile(chooser, false);
}

std::string chooseFileToSave(WindowHandle, const FileChooser& chooser) {
    return chooseFile(chooser, true);
}

} // namespace MVR::Platform
