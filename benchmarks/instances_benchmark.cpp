// Tools created one by one and destroyed, 10,000 of them beside 1,000: a ratio of 10 means that a
// tool costs the same whatever their number. Measured with all of them below one folder, and with
// each below the one before it.

#include "bench_host.h"
#include "plugins/instance_reference.h"

#include <benchmark/benchmark.h>

#include <functional>

namespace {

constexpr double kLimit = 12;

using MVR::InstanceReference;

std::size_t hashOfNames(InstanceReference& top) {
    std::vector<InstanceReference*> references;
    top.collectInstances(references);
    std::size_t hash = 0;
    for (const InstanceReference* reference : references)
        hash = hash * 31 + std::hash<std::string>()(reference->getInstanceName());
    return hash;
}

InstanceReference* createTools(BenchHost& host, int count, bool isChain) {
    MVR::Tag data = MVR::Tag::element("MVR_Plugin");
    data.addChild(MVR::Tag::element("type", "Empty Plugin"));
    InstanceReference* const top = host.core->create(data, nullptr, false);
    InstanceReference* parent = top;
    for (int i = 1; i < count; ++i) {
        InstanceReference* const tool = host.core->create(data, parent, false);
        if (isChain)
            parent = tool;
    }
    return top;
}

void destroyTools(BenchHost& host) {
    host.core->deleteAllInstances();
    host.adaptor.clearUndo();
}

// The first round isn't timed: only that one meets memory that the process never touched, and the
// smaller number has ten times the rounds over which to spread the cost.
void createAndDestroy(benchmark::State& state, int count, bool isChain) {
    BenchHost host;
    const std::size_t hash = hashOfNames(*createTools(host, count, isChain));
    destroyTools(host);
    for (auto round : state) {
        createTools(host, count, isChain);
        destroyTools(host);
    }
    if (count == 10000) {
        state.counters["hash"] = static_cast<double>(hash & 0xffffffff);
        state.counters["limit"] = kLimit;
    }
}

BENCHMARK_CAPTURE(createAndDestroy, flat, 10000, false)->Name("instances_flat_10000/mirvane");
BENCHMARK_CAPTURE(createAndDestroy, flat, 1000, false)->Name("instances_flat_10000/instances_1000");
BENCHMARK_CAPTURE(createAndDestroy, chain, 10000, true)->Name("instances_chain_10000/mirvane");
BENCHMARK_CAPTURE(createAndDestroy, chain, 1000, true)
    ->Name("instances_chain_10000/instances_1000");

} // namespace
