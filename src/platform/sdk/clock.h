#pragma once

#include <cstdint>

/// Time. Everything here may be called at any time.
namespace MVR::Platform {

/// Milliseconds since an arbitrary start; wraps to 0 after 2^32 - 1, so only differences count.
/// Stands for GetTickCount.
std::uint32_t tickMs();

struct UtcTime {
    std::int32_t year;
    std::int32_t month;  ///< 1 to 12
    std::int32_t day;    ///< 1 to 31
    std::int32_t hour;   ///< 0 to 23
    std::int32_t minute; ///< 0 to 59
    std::int32_t second; ///< 0 to 59
};

/// Date and time in UTC, Gregorian. Stands for GetSystemTime.
UtcTime utcNow();

/// A clock in the caller's hand. While it lives `tickMs` and `utcNow` stand still, and move only by
/// `advance` and `set`; with its end the real clock is back. One at a time.
/// It rules the library or program that it was linked into: a tool or driver library that carries
/// its own static part keeps the real clock.
class HandClock {
public:
    static constexpr std::int64_t kMillennium = 946684800000; ///< 2000-01-01 00:00:00 in UTC

    /// `utcMs`: milliseconds since 1970-01-01 00:00:00 UTC.
    explicit HandClock(std::uint32_t tick = 0, std::int64_t utcMs = kMillennium);
    ~HandClock();
    HandClock(const HandClock&) = delete;
    HandClock& operator=(const HandClock&) = delete;

    /// Moves the tick, which may wrap, and the UTC time.
    void advance(std::uint32_t ms);
    /// Puts the tick there, forward or back; the UTC time stays.
    void set(std::uint32_t tick);

    /// The living hand clock, or null when the clock is real.
    static HandClock* current();

private:
    friend std::uint32_t tickMs();
    friend UtcTime utcNow();

    std::uint32_t tick_;
    std::int64_t utcMs_;
};

} // namespace MVR::Platform
