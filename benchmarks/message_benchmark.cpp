// A broadcast to 1, 10 and 100 listeners, beside a signal library and beside the bare loop of
// virtual calls that no network can beat. Each handler folds the message into a hash, so results
// can be compared and no call can be left out.

#include "core/base/sdk/log.h"
#include "core/messages/sdk/message_node.h"

#include <benchmark/benchmark.h>
#include <boost/signals2.hpp>

#include <cstdint>
#include <memory>
#include <string>
#include <vector>

namespace {

using MVR::Util::Message;
using MVR::Util::MessageNode;

class Listener final : public MessageNode {
public:
    Listener(std::uint32_t salt, std::uint64_t* hash)
        : MessageNode("listener"), salt_(salt), hash_(hash) {}

    void receive(Message& message, bool) override {
        if (message.id == 20000)
            *hash_ = *hash_ * 31 + message.wParam + salt_;
    }

private:
    std::uint32_t salt_;
    std::uint64_t* hash_;
};

using Listeners = std::vector<std::unique_ptr<Listener>>;

Listeners makeListeners(std::int64_t count, std::uint64_t* hash) {
    Listeners listeners;
    for (std::int64_t index = 0; index < count; ++index)
        listeners.push_back(std::make_unique<Listener>(static_cast<std::uint32_t>(index), hash));
    return listeners;
}

// The hash of one round, so that it doesn't depend on the number of rounds.
template <class Deliver>
void measure(benchmark::State& state, std::uint64_t* hash, Deliver deliver) {
    Message message(20000, 17);
    for (auto round : state) {
        *hash = 0;
        deliver(message);
        benchmark::DoNotOptimize(*hash);
    }
    state.counters["hash"] = static_cast<double>(*hash & 0xffffffff);
}

void mirvane(benchmark::State& state, std::int64_t count) {
    std::uint64_t hash = 0;
    MessageNode source("source");
    const Listeners listeners = makeListeners(count, &hash);
    // Listeners are called last first; linked in this order, all three call them alike.
    for (auto listener = listeners.rbegin(); listener != listeners.rend(); ++listener)
        if ((*listener)->listenTo(&source) != 0)
            state.SkipWithError("no link");
    MessageNode* node = &source;
    benchmark::DoNotOptimize(node);
    measure(state, &hash, [node](Message& message) { node->broadcast(message); });
}

void boostSignals2(benchmark::State& state, std::int64_t count) {
    std::uint64_t hash = 0;
    const Listeners listeners = makeListeners(count, &hash);
    boost::signals2::signal<void(Message&)> signal;
    for (const auto& listener : listeners)
        signal.connect([target = static_cast<MessageNode*>(listener.get())](Message& message) {
            target->receive(message, true);
        });
    measure(state, &hash, [&signal](Message& message) { signal(message); });
}

void bareLoop(benchmark::State& state, std::int64_t count) {
    std::uint64_t hash = 0;
    const Listeners listeners = makeListeners(count, &hash);
    std::vector<MessageNode*> targets;
    for (const auto& listener : listeners)
        targets.push_back(listener.get());
    benchmark::DoNotOptimize(targets);
    measure(state, &hash, [&targets](Message& message) {
        for (MessageNode* target : targets)
            target->receive(message, true);
        benchmark::ClobberMemory();
    });
}

const bool registered = [] {
    for (const std::int64_t count : {1, 10, 100}) {
        const std::string name = "broadcast_" + std::to_string(count);
        benchmark::RegisterBenchmark((name + "/mirvane").c_str(), mirvane, count);
        benchmark::RegisterBenchmark((name + "/boost_signals2").c_str(), boostSignals2, count);
        benchmark::RegisterBenchmark((name + "/bare_loop").c_str(), bareLoop, count);
    }
    return true;
}();

} // namespace
