#include "core/services/timer_manager.h"

#include <limits>

namespace MVR::Util {

namespace {

std::uint32_t wholeMilliseconds(double seconds) {
    constexpr double most = std::numeric_limits<std::uint32_t>::max();
    const double milliseconds = seconds * 1000;
    if (!(milliseconds > 0))
        return 0;
    return milliseconds < most ? static_cast<std::uint32_t>(milliseconds)
                               : std::numeric_limits<std::uint32_t>::max();
}

} // namespace

TimerManager::~TimerManager() {
    for (const auto& [native, receiver] : byNative_)
        Platform::killTimer(native);
    if (exists() && instance() != this)
        instance()->disarmAll(this);
}

void TimerManager::onTimer(std::int32_t, std::uint32_t) {}

void TimerManager::arm(TimerManager* client, std::int32_t id, double seconds) {
    const auto running = byId_.find(id);
    const Platform::TimerId existing = running != byId_.end() ? running->second : 0;
    const Platform::TimerId native =
        Platform::setTimer(existing, wholeMilliseconds(seconds), &TimerManager::dispatch);
    if (existing != native)
        byNative_.erase(existing);
    byId_[id] = native;
    byNative_[native] = {client, id};
}

void TimerManager::disarm(TimerManager* client, std::int32_t id) {
    for (auto entry = byNative_.begin(); entry != byNative_.end(); ++entry) {
        if (entry->second.client != client || entry->second.id != id)
            continue;
        Platform::killTimer(entry->first);
        byNative_.erase(entry);
        byId_.erase(id);
        return;
    }
}

void TimerManager::dispatch(Platform::TimerId native, std::uint32_t tick) {
    const auto& receivers = instance()->byNative_;
    const auto found = receivers.find(native);
    if (found == receivers.end())
        return;
    const Receiver receiver = found->second;
    receiver.client->onTimer(receiver.id, tick);
}

void TimerManager::disarmAll(const TimerManager* client) {
    for (auto entry = byNative_.begin(); entry != byNative_.end();) {
        if (entry->second.client != client) {
            ++entry;
            continue;
        }
        Platform::killTimer(entry->first);
        byId_.erase(entry->second.id);
        entry = byNative_.erase(entry);
    }
}

} // namespace MVR::Util
