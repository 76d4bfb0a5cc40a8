// Timers for any number of clients, made of the platform's timers.
#pragma once

#include "core/util/sdk/singleton.h"
#include "platform/timers.h"

#include <cstdint>
#include <map>

namespace MVR::Util {

/// The timer service (the singleton) and the base of its clients, which override `onTimer`.
///
/// 1. A client arms a timer under an id that is unique in the whole process (123: a recording's
///    frames).
/// 2. `onTimer` is called at each interval, from the host's loop or from a loop inside another
///    event.
/// 3. The client disarms the timer or arms it again with another interval, also in `onTimer`. Its
///    destructor disarms what still runs.
class TimerManager : public Singleton<TimerManager> {
public:
    ~TimerManager() override;

    /// Called at each interval. `now` is a tick in milliseconds that wraps at 2^32.
    virtual void onTimer(std::int32_t id, std::uint32_t now);

    /// Starts the timer `id`, or gives the running one this interval and this client. Fractions of
    /// a millisecond are cut off.
    void arm(TimerManager* client, std::int32_t id, double seconds);
    /// Stops the timer `id` if it runs for this client.
    void disarm(TimerManager* client, std::int32_t id);

protected:
    TimerManager() = default;

    void armTimer(std::int32_t id, double seconds) { instance()->arm(this, id, seconds); }
    void disarmTimer(std::int32_t id) { instance()->disarm(this, id); }

private:
    friend class Singleton<TimerManager>;

    struct Receiver {
        TimerManager* client;
        std::int32_t id;
    };

    static void dispatch(Platform::TimerId native, std::uint32_t tick);
    void disarmAll(const TimerManager* client);

    // Empty in clients.
    std::map<Platform::TimerId, Receiver> byNative_;
    std::map<std::int32_t, Platform::TimerId> byId_;
};

} // namespace MVR::Util
