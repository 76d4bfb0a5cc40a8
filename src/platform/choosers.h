#pragma once

#include "platform/windows.h"

#include <cstddef>
#include <cstdint>
#include <string>
#include <vector>

namespace MVR::Platform {

/// `flags` of a message box: one of the button sets, one icon, one default button, added up.
constexpr std::uint32_t kButtonsOk = 0x0;
constexpr std::uint32_t kButtonsOkCancel = 0x1;
constexpr std::uint32_t kButtonsAbortRetryIgnore = 0x2;
constexpr std::uint32_t kButtonsYesNoCancel = 0x3;
constexpr std::uint32_t kButtonsYesNo = 0x4;
constexpr std::uint32_t kButtonsRetryCancel = 0x5;
constexpr std::uint32_t kButtonsCancelTryContinue = 0x6; ///< shown by no back end
constexpr std::uint32_t kButtonsMask = 0xF;
constexpr std::uint32_t kIconError = 0x10;
constexpr std::uint32_t kIconQuestion = 0x20;
constexpr std::uint32_t kIconWarning = 0x30;
constexpr std::uint32_t kIconInformation = 0x40;
constexpr std::uint32_t kDefaultSecond = 0x100;
constexpr std::uint32_t kDefaultThird = 0x200;
constexpr std::uint32_t kDefaultMask = 0xF00;

constexpr std::int32_t kAnswerOk = 1;
constexpr std::int32_t kAnswerCancel = 2;
constexpr std::int32_t kAnswerAbort = 3;
constexpr std::int32_t kAnswerRetry = 4;
constexpr std::int32_t kAnswerIgnore = 5;
constexpr std::int32_t kAnswerYes = 6;
constexpr std::int32_t kAnswerNo = 7;

/// For the back ends: the buttons of each set that they show, in their order; 0 means no button.
constexpr std::size_t kMostButtons = 3;
constexpr std::int32_t kButtonSets[][kMostButtons] = {
    {kAnswerOk, 0, 0},
    {kAnswerOk, kAnswerCancel, 0},
    {kAnswerAbort, kAnswerRetry, kAnswerIgnore},
    {kAnswerYes, kAnswerNo, kAnswerCancel},
    {kAnswerYes, kAnswerNo, 0},
    {kAnswerRetry, kAnswerCancel, 0},
};
constexpr std::uint32_t kButtonSetCount = sizeof(kButtonSets) / sizeof(kButtonSets[0]);

/// Returns the answer of the button that Return presses, which is the first if the flags name one
/// that isn't there. For a set that isn't shown: Cancel for Cancel, Try, Continue, else OK.
constexpr std::int32_t defaultAnswer(std::uint32_t flags) {
    const std::uint32_t set = flags & kButtonsMask;
    if (set >= kButtonSetCount)
        return set == kButtonsCancelTryContinue ? kAnswerCancel : kAnswerOk;
    const std::size_t button = (flags & kDefaultMask) / kDefaultSecond;
    return button < kMostButtons && kButtonSets[set][button] != 0 ? kButtonSets[set][button]
                                                                  : kButtonSets[set][0];
}

/// Shows a box and returns the button that the user chose, or 0, with nothing shown, for an unknown
/// button set. Without a screen a scripted answer (see "platform/headless/desktop.h") counts, else
/// the default button. Stands for MessageBoxA.
std::int32_t messageBox(WindowHandle owner, const std::string& text, const std::string& title,
                        std::uint32_t flags);

/// A line in the list of file types of a chooser.
struct FileFilter {
    std::string text;    ///< what the user reads
    std::string pattern; ///< such as "*.prm"
};

struct FileChooser {
    std::vector<FileFilter> filters; ///< the first is chosen at the start
    std::string extension;           ///< added to a name without one, such as "prm"; may be empty
    std::string folder;              ///< where the user begins
};

/// Lets the user choose a file to read or a name to write to. Returns the full path, or "" if the
/// user cancelled. Without a screen a scripted answer counts, else "". Stands for GetOpenFileNameA
/// and GetSaveFileNameA.
std::string chooseFileToOpen(WindowHandle owner, const FileChooser& chooser);
std::string chooseFileToSave(WindowHandle owner, const FileChooser& chooser);

/// An item of a menu. One without text is a separator.
struct MenuItem {
    std::int32_t command = 0; ///< 0 for a submenu and a separator
    std::string text;
    bool isGreyed = false;
    std::vector<MenuItem> items; ///< of a submenu
};

/// Shows a menu at the mouse and returns the command that the user chose, or 0 for none. Without a
/// screen a scripted answer counts, else 0; a greyed or missing item can't be chosen. Stands for
/// TrackPopupMenu.
std::int32_t chooseFromMenu(WindowHandle owner, const std::vector<MenuItem>& items);

} // namespace MVR::Platform
