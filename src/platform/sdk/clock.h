#pragma once

#include <cstdint>

/// Time. Everything here may be called at any time.
namespace MVR::Platform {

/// Returns the milliseconds since an arbitrary start. They wrap to 0 after 2^32 - 1, so only
/// differences count. Stands for GetTickCount.
std::uint32_t tickMs();

struct UtcTime {
    std::int32_t year;
    std::int32_t month;  ///< 1 to 12
    std::int32_t day;    ///< 1 to 31
    std::int32_t hour;   ///< 0 to 23
    std::int32_t minute; ///< 0 to 59
    std::int32_t second; ///< 0 to 59
};

/// Returns the Gregorian date and time in UTC. Stands for GetSystemTime.
UtcTime utcNow();

/// A clock in the caller's hand. While it lives `tickMs` and `utcNow` stand still, and only
/// `advance` and `set` move them; afterwards the real clock is back. One at a time. It rules the
/// library or program that it was linked into: a tool or driver library with a static part of its
/// own keeps the real clock.
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
    /// Sets the tick, forward or back. The UTC time stays.
    void set(std::uint32_t tick);

    /// Returns the living hand clock, or null if the clock is real.
    static HandClock* current();

private:
    friend std::uint32_t tickMs();
    friend UtcTime utcNow();

    std::uint32_t tick_;
    std::int64_t utcMs_;
};

} // namespace MVR::Platform
