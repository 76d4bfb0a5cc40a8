// The codes of keys: in key events, in the table of unlocked keys, and behind the controls of the
// device "Keyboard".
#pragma once

#include <cstdint>

namespace MVR {

/// Virtual-key codes, 0 to 255. Digits and letters have the codes of their characters: '0' to '9',
/// 'A' to 'Z'. Those of a number pad follow kNum0, the function keys F2 to F24 follow kF1.
namespace KeyCode {
constexpr std::int32_t kBackspace = 8;
constexpr std::int32_t kTab = 9;
constexpr std::int32_t kClear = 12;
constexpr std::int32_t kReturn = 13;
constexpr std::int32_t kShift = 16; ///< either side
constexpr std::int32_t kCtrl = 17;  ///< either side
constexpr std::int32_t kAlt = 18;   ///< either side
constexpr std::int32_t kPause = 19;
constexpr std::int32_t kCapsLock = 20;
constexpr std::int32_t kEscape = 27;
constexpr std::int32_t kSpace = 32;
constexpr std::int32_t kPageUp = 33;
constexpr std::int32_t kPageDown = 34;
constexpr std::int32_t kEnd = 35;
constexpr std::int32_t kHome = 36;
constexpr std::int32_t kLeft = 37; ///< the arrows
constexpr std::int32_t kUp = 38;
constexpr std::int32_t kRight = 39;
constexpr std::int32_t kDown = 40;
constexpr std::int32_t kInsert = 45;
constexpr std::int32_t kDelete = 46;
constexpr std::int32_t kLeftSystem = 91; ///< the keys beside Alt that open the system's menu
constexpr std::int32_t kRightSystem = 92;
constexpr std::int32_t kNum0 = 96;
constexpr std::int32_t kNumMultiply = 106;
constexpr std::int32_t kNumAdd = 107;
constexpr std::int32_t kNumSubtract = 109;
constexpr std::int32_t kNumDecimal = 110;
constexpr std::int32_t kNumDivide = 111;
constexpr std::int32_t kF1 = 112;
constexpr std::int32_t kLeftAlt = 164;
constexpr std::int32_t kRightAlt = 165;
constexpr std::int32_t kPlus = 187;
constexpr std::int32_t kComma = 188;
constexpr std::int32_t kMinus = 189;
constexpr std::int32_t kPeriod = 190;
} // namespace KeyCode

/// Bits of UnlockedKey::modifiers.
namespace KeyModifier {
constexpr std::int32_t kCtrl = 1;
constexpr std::int32_t kAlt = 2;
constexpr std::int32_t kShift = 4;
} // namespace KeyModifier

/// A key that has a name of its own.
struct NamedKey {
    std::int32_t code;
    const char* name; ///< the type of its control, as bindings hold it: the spelling is frozen
};

/// All of them, in the order in which the user sees them. The other keys have controls too, whose
/// type is empty.
// clang-format off
inline constexpr NamedKey kNamedKeys[] = {
    {KeyCode::kLeft, "Left_Arrow"}, {KeyCode::kUp, "Up_Arrow"}, {KeyCode::kRight, "Right_Arrow"},
    {KeyCode::kDown, "Down_Arrow"}, {KeyCode::kBackspace, "Backspace"}, {KeyCode::kTab, "Tab"},
    {KeyCode::kClear, "Clear"}, {KeyCode::kReturn, "RETUR"}, {KeyCode::kShift, "Shift"},
    {KeyCode::kCtrl, "CTRL"}, {KeyCode::kAlt, "ALT"}, {KeyCode::kPause, "PAUSE"},
    {KeyCode::kCapsLock, "Caps_lock"}, {KeyCode::kEscape, "Escape"}, {KeyCode::kSpace, "Space"},
    {KeyCode::kPageUp, "Page_UP"}, {KeyCode::kPageDown, "Page_DOWN"}, {KeyCode::kEnd, "End"},
    {KeyCode::kHome, "Home"}, {KeyCode::kInsert, "Insert"}, {KeyCode::kDelete, "Delete"},
    {'0', "0"}, {'1', "1"}, {'2', "2"}, {'3', "3"}, {'4', "4"}, {'5', "5"}, {'6', "6"}, {'7', "7"},
    {'8', "8"}, {'9', "9"}, {'A', "A"}, {'B', "B"}, {'C', "C"}, {'D', "D"}, {'E', "E"}, {'F', "F"},
    {'G', "G"}, {'H', "H"}, {'I', "I"}, {'J', "J"}, {'K', "K"}, {'L', "L"}, {'M', "M"}, {'N', "N"},
    {'O', "O"}, {'P', "P"}, {'Q', "Q"}, {'R', "R"}, {'S', "S"}, {'T', "T"}, {'U', "U"}, {'V', "V"},
    {'W', "W"}, {'X', "X"}, {'Y', "Y"}, {'Z', "Z"}, {KeyCode::kPlus, "+"}, {KeyCode::kMinus, "-"},
    {KeyCode::kPeriod, "."}, {KeyCode::kComma, ","}, {KeyCode::kLeftSystem, "Left_Windows_key"},
    {KeyCode::kRightSystem, "Right_Windows_key"}, {KeyCode::kNum0, "Num_0"},
    {KeyCode::kNum0 + 1, "Num_1"}, {KeyCode::kNum0 + 2, "Num_2"}, {KeyCode::kNum0 + 3, "Num_3"},
    {KeyCode::kNum0 + 4, "Num_4"}, {KeyCode::kNum0 + 5, "Num_5"}, {KeyCode::kNum0 + 6, "Num_6"},
    {KeyCode::kNum0 + 7, "Num_7"}, {KeyCode::kNum0 + 8, "Num_8"}, {KeyCode::kNum0 + 9, "Num_9"},
    {KeyCode::kNumMultiply, "Num_*"}, {KeyCode::kNumAdd, "Num_+"},
    {KeyCode::kNumSubtract, "Num_-"}, {KeyCode::kNumDecimal, "Num_,"},
    {KeyCode::kNumDivide, "Num_/"}, {KeyCode::kF1, "F1"}, {KeyCode::kF1 + 1, "F2"},
    {KeyCode::kF1 + 2, "F3"}, {KeyCode::kF1 + 3, "F4"}, {KeyCode::kF1 + 4, "F5"},
    {KeyCode::kF1 + 5, "F6"}, {KeyCode::kF1 + 6, "F7"}, {KeyCode::kF1 + 7, "F8"},
    {KeyCode::kF1 + 8, "F9"}, {KeyCode::kF1 + 9, "F10"}, {KeyCode::kF1 + 10, "F11"},
    {KeyCode::kF1 + 11, "F12"}, {KeyCode::kF1 + 12, "F13"}, {KeyCode::kF1 + 13, "F14"},
    {KeyCode::kF1 + 14, "F15"}, {KeyCode::kF1 + 15, "F16"}, {KeyCode::kF1 + 16, "F17"},
    {KeyCode::kF1 + 17, "F18"}, {KeyCode::kF1 + 18, "F19"}, {KeyCode::kF1 + 19, "F20"},
    {KeyCode::kF1 + 20, "F21"}, {KeyCode::kF1 + 21, "F22"}, {KeyCode::kF1 + 22, "F23"},
    {KeyCode::kF1 + 23, "F24"}, {KeyCode::kLeftAlt, "Left_MENU"}, {KeyCode::kRightAlt, "Right_MENU"},
};
// clang-format on

} // namespace MVR
