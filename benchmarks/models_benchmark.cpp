// The tree of tools as it is stored and read: a large configuration beside a tenth of it, the
// catalogue beside the bare reading of its files, and the order of recording beside its bound.

#include "bench_scene.h"
#include "data/sdk/byte_buffer.h"
#include "instance/plugin_instance.h"
#include "platform/sdk/files.h"
#include "plugins/contract/c_camera_plugin.h"
#include "plugins/instance_reference.h"
#include "plugins/libraries/core_library.h"
#include "plugins/libraries/plugin.h"

#include <benchmark/benchmark.h>
#include <malloc.h>

#include <algorithm>
#include <cstdlib>
#include <fstream>
#include <functional>
#include <string>
#include <vector>

namespace {

using namespace MVR;

constexpr int kProperties = 8;
constexpr int kModels = 10000;
constexpr int kSortedTools = 5000;
constexpr double kSortSeconds = 0.1;
// The first rounds meet memory that the process never touched.
constexpr int kRoundsUntilWarm = 2;

class Tool final : public CCamera {
public:
    using CCamera::CCamera;

    std::int32_t init() override {
        for (int i = 0; i < kProperties; ++i)
            getInterface()->addProperty("P" + std::to_string(i), UniDevice::finite, nullptr);
        return 0;
    }
    std::int32_t create() override {
        getInterface()->createNode("Node", kNodeHelper, 0);
        return 0;
    }
};

class Kind final : public CCameraPlugin {
public:
    CCamera* create(CCamera::CreateParam* param) override { return new Tool(param); }
    std::string getName() override { return "Keeper"; }
    std::string getDescription() override { return "Keeps what was recorded"; }
    std::string getCategory() override { return ""; }
};

/// A host with tools; the node of each is below that of the next.
class Rig {
public:
    explicit Rig(int count, bool isChain = true) {
        std::int32_t error = 0;
        Plugin::create(CoreLibrary::instance(), new Kind, error);
        SceneNode* below = nullptr;
        for (int i = 0; i < count; ++i) {
            PluginInstance* const tool =
                host.core->createByType("Keeper", "", false)->getInstance();
            SceneNode* const node = host.adaptor.createNode(tool, "Node");
            if (below != nullptr && isChain)
                below->setParent(node);
            below = node;
        }
        host.adaptor.clearUndo();
    }

    BenchHostOf<SceneAdaptor> host;
};

std::size_t hashOf(const std::vector<PluginInstance*>& tools) {
    std::size_t hash = 0;
    for (const PluginInstance* tool : tools)
        hash = hash * 31 + std::hash<std::string>()(tool->getName());
    return hash & 0xffffffff;
}

/// The keys of each property, so that a tool has 1,000. With MIRVANE_BENCH_KEYS=1000 each property
/// has that many, which needs 8 GB of memory.
int keysOfProperty() {
    const char* const asked = std::getenv("MIRVANE_BENCH_KEYS");
    return asked != nullptr ? std::max(1, std::atoi(asked)) : 125;
}

void fillKeys(CoreImplementation& core) {
    const int keys = keysOfProperty();
    for (PluginInstance* tool : core.getInstances(false)) {
        tool->getStoredInput().getValues().resize(kProperties);
        for (auto& values : tool->getStoredInput().getValues())
            for (int i = 0; i < keys; ++i)
                values.setKey(i / 60.0, i % 7);
    }
}

// Each round saves a scene as text and opens it in an empty host.
void saveAndLoad(benchmark::State& state, int count) {
    Rig rig(count);
    CoreImplementation& core = *rig.host.core;
    fillKeys(core);
    // Otherwise the allocator returns a large text at once, and each round pays for new memory.
    mallopt(M_MMAP_MAX, 0);
    mallopt(M_TRIM_THRESHOLD, -1);
    std::size_t bytes = 0;
    const auto round = [&] {
        const std::string text = core.getConfiguration().toText("\n", "\t", "");
        bytes = text.size();
        core.deleteAllInstances();
        rig.host.adaptor.clearUndo();
        rig.host.adaptor.clearScene();
        core.loadConfiguration(Tag(text));
        rig.host.adaptor.clearUndo();
    };
    for (int i = 0; i < kRoundsUntilWarm; ++i)
        round();
    // Before the clock chooses a number of rounds, since each load reverses the order.
    const std::size_t hash = hashOf(core.getInstances(false)) ^ bytes;
    for (auto each : state)
        round();
    const std::vector<PluginInstance*> tools = core.getInstances(false);
    if (tools.size() != static_cast<std::size_t>(count))
        return state.SkipWithError("not all tools came back");
    if (tools.front()->getStoredInput().getValues().size() != kProperties)
        return state.SkipWithError("not all values came back");
    if (count == 10000)
        state.counters["hash"] = static_cast<double>(hash & 0xffffffff);
}

Tag modelOf(int tools, int number) {
    Tag model = Tag::element("MVR_Plugin");
    model.addChild(Tag::element("type", "Model part"));
    model.addChild(Tag::element("name", "Model " + std::to_string(number)));
    model.addChild(Tag::element("category", "Rigs"));
    for (int i = 0; i < tools; ++i) {
        Tag part = Tag::element("MVR_Plugin");
        part.addChild(Tag::element("type", "Keeper"));
        part.addChild(Tag::element("name", "Part " + std::to_string(i)));
        Tag& info = part.addChild(Tag::element("nodeinfo"));
        Tag& node = info.addChild(Tag::element("node"));
        node.attributeRef("name") = "Node";
        node.addChild(Tag::element("transform", std::string(172, 'A'))); // as long as a matrix
        node.addChild(Tag::element("parent"));
        model.addChild(std::move(part));
    }
    return model;
}

/// Most models are small: some tools; every hundredth has 200.
class Catalogue {
public:
    Catalogue() {
        for (int i = 0; i < kModels; ++i) {
            const auto folder = rig.host.getHome() / "PRM" / std::to_string(i / 100);
            std::filesystem::create_directories(folder);
            files.push_back((folder / (std::to_string(i) + ".prm")).string());
            const Tag model = modelOf(i % 100 == 0 ? 200 : 1 + i % 5, i);
            const ByteBuffer block = ByteBuffer::compressed(model.toText("\r\n", "\t", ""));
            std::ofstream(files.back(), std::ios::binary) << block.view();
        }
    }

    Rig rig{1};
    std::vector<std::string> files;
};

void buildCatalogue(benchmark::State& state) {
    Catalogue catalogue;
    CoreImplementation& core = *catalogue.rig.host.core;
    core.buildCatalogue(); // the first run touches new memory and files
    for (auto each : state)
        core.buildCatalogue();
    state.counters["hash"] = core.getCatalogueSize() - 1; // without the kind of tool
}

void readModels(benchmark::State& state) {
    Catalogue catalogue;
    std::vector<Tag> models;
    const auto round = [&] {
        models.clear();
        for (const std::string& file : catalogue.files) {
            ByteBuffer bytes;
            if (!bytes.readFile(file) ||
                models.emplace_back().parse(bytes.decompress().view()) != 0)
                return state.SkipWithError("a file can't be read");
        }
    };
    round();
    for (auto each : state)
        round();
    state.counters["hash"] = static_cast<double>(models.size());
}

// In a chain each tool waits for all after it.
void sortTools(benchmark::State& state, bool isChain) {
    Rig rig(kSortedTools, isChain);
    const std::vector<PluginInstance*> tools = rig.host.core->getInstances(false);
    std::vector<PluginInstance*> sorted;
    for (auto each : state)
        sorted = rig.host.core->sortForRecording(tools);
    state.counters["hash"] = static_cast<double>(hashOf(sorted));
}

// The time limit of a sort, in the table as if a peer needed it.
void sortBound(benchmark::State& state) {
    for (auto each : state)
        state.SetIterationTime(kSortSeconds);
}

BENCHMARK_CAPTURE(saveAndLoad, many, 10000)->Name("configuration_10000/mirvane");
BENCHMARK_CAPTURE(saveAndLoad, few, 1000)->Name("configuration_10000/tools_1000");
BENCHMARK(buildCatalogue)->Name("catalogue_10000/mirvane");
BENCHMARK(readModels)->Name("catalogue_10000/read_and_parse");
BENCHMARK_CAPTURE(sortTools, chain, true)->Name("sort_chain_5000/mirvane");
BENCHMARK(sortBound)->Name("sort_chain_5000/bound")->UseManualTime()->Iterations(10);
BENCHMARK_CAPTURE(sortTools, flat, false)->Name("sort_flat_5000/mirvane");
BENCHMARK(sortBound)->Name("sort_flat_5000/bound")->UseManualTime()->Iterations(10);

} // namespace
