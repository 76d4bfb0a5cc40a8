// The core's own settings, for CoreInterface::getProperty() and setProperty(). They may be read
// and set at any time; the countdown applies to the next take, auto-expand also to a running one.
#pragma once

#include <cstdint>

namespace MVR {

/// Their ids, each with the type of its value.
namespace Setting {
constexpr std::int32_t kLogLevel = 101;       ///< string: "Disabled", "Low", "High" or "Debug"
constexpr std::int32_t kSilentMode = 102;     ///< bool: message boxes answer themselves
constexpr std::int32_t kRecentItems = 103;    ///< int: length of the recent list
constexpr std::int32_t kStartCountdown = 105; ///< int: whole seconds before a take
constexpr std::int32_t kEndCountdown = 106;   ///< int
constexpr std::int32_t kReserved = 107;       ///< bool: kept in the files, read by nobody
constexpr std::int32_t kCheckUpdates = 108;   ///< bool
constexpr std::int32_t kAutoExpand = 109;     ///< bool: a take goes on past the end of the range
} // namespace Setting

} // namespace MVR
