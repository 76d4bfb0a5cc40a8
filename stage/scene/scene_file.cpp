#include "stage/scene/scene_file.h"

#include "platform/sdk/files.h"
#include "plugins/contract/model_words.h"
#include "stage/base/text.h"
#include "stage/scene/node_elements.h"
#include "stage/scene/scene.h"
#include "stage/scene/tag_numbers.h"
#include "stage/scene/timeline.h"
#include "stage/scene/undo_list.h"

#include <cmath>
#include <string_view>
#include <unordered_map>
#include <utility>

namespace Stage {

namespace {

using MVR::Tag;

constexpr const char* kRoot = "MirvaneScene";
constexpr const char* kVersion = "1";
constexpr const char* kConfiguration = MVR::ModelWord::kTree;

struct TimeElement {
    const char* word;
    double SceneData::*number;
};
/// In the order of the file.
constexpr TimeElement kTimes[] = {{"time", &SceneData::time},
                                  {"start", &SceneData::start},
                                  {"end", &SceneData::end},
                                  {"rate", &SceneData::rate}};

Tag toTag(const SceneData& data) {
    Tag tag = Tag::element(kRoot);
    tag.attributeRef("version") = kVersion;
    for (const TimeElement& time : kTimes)
        tag.addChild(Tag::element(time.word, toText(data.*time.number)));
    for (const SceneData::Node& node : data.nodes) {
        const auto parent = static_cast<std::size_t>(node.parent);
        tag.addChild(
            writeNode(node.record, node.parent >= 0 ? data.nodes[parent].record.sceneName : ""));
    }
    tag.addChild(data.configuration);
    return tag;
}

/// Turns a tree into a scene's data and checks all of it. Stops at the first fault.
class SceneReader {
public:
    explicit SceneReader(const Tag& tag) : tag_(tag) {}

    [[nodiscard]] bool read(SceneData& out);
    [[nodiscard]] const std::string& getError() const { return error_; }

private:
    bool fail(const std::string& reason) {
        error_ = reason;
        return false;
    }
    bool readTime(SceneData& data);
    bool readNodes(SceneData& data);
    bool link(SceneData& data);
    bool checkHierarchy(const SceneData& data);

    const Tag& tag_;
    std::string error_;
    std::vector<std::string> parents_; // by node; empty for a root
};

bool SceneReader::readTime(SceneData& data) {
    for (const TimeElement& time : kTimes)
        if (!readNumbers(tag_, time.word, {&(data.*time.number), 1}, error_))
            return false;
    for (const double time : {data.time, data.start, data.end})
        if (std::fabs(time) > kLongestTime)
            return fail("the time " + toText(time) + " is too far from 0");
    if (data.rate < kLeastRate || data.rate > kHighestRate)
        return fail("a rate of " + toText(data.rate) + " frames per second is out of range");
    return data.start <= data.end || fail("the range ends before it starts");
}

bool SceneReader::readNodes(SceneData& data) {
    for (std::int32_t i = 0; i < tag_.childCount(); ++i) {
        if (!tag_.child(i).hasName(kNodeWord))
            continue;
        if (data.nodes.size() == kMostSceneNodes)
            return fail("it has more than " + std::to_string(kMostSceneNodes) + " nodes");
        NodeRecord& record = data.nodes.emplace_back().record;
        std::string reason;
        if (!readNode(tag_.child(i), record, parents_.emplace_back(), reason)) {
            return fail("node " + std::to_string(data.nodes.size()) + " " +
                        shown(record.sceneName) + ": " + reason);
        }
    }
    return true;
}

/// Finds the parents by their names, which must be unique.
bool SceneReader::link(SceneData& data) {
    std::unordered_map<std::string_view, std::int32_t> byName;
    for (std::size_t i = 0; i < data.nodes.size(); ++i) {
        const std::string& name = data.nodes[i].record.sceneName;
        if (!byName.emplace(name, static_cast<std::int32_t>(i)).second)
            return fail("two nodes have the name " + shown(name));
    }
    for (std::size_t i = 0; i < data.nodes.size(); ++i) {
        if (parents_[i].empty())
            continue;
        const auto parent = byName.find(parents_[i]);
        if (parent == byName.end()) {
            return fail("the parent of " + shown(data.nodes[i].record.sceneName) + ", " +
                        shown(parents_[i]) + ", isn't there");
        }
        data.nodes[i].parent = parent->second;
    }
    return checkHierarchy(data);
}

bool SceneReader::checkHierarchy(const SceneData& data) {
    // Visits each node once: the path upwards ends at a root, or at a node of an earlier path.
    std::vector<std::size_t> wayOf(data.nodes.size(), 0);
    for (std::size_t way = 1; way <= data.nodes.size(); ++way) {
        auto index = static_cast<std::int32_t>(way - 1);
        while (index >= 0 && wayOf[static_cast<std::size_t>(index)] == 0) {
            wayOf[static_cast<std::size_t>(index)] = way;
            index = data.nodes[static_cast<std::size_t>(index)].parent;
        }
        if (index >= 0 && wayOf[static_cast<std::size_t>(index)] == way) {
            return fail("the node " +
                        shown(data.nodes[static_cast<std::size_t>(index)].record.sceneName) +
                        " hangs below itself");
        }
    }
    return true;
}

bool SceneReader::read(SceneData& out) {
    if (!tag_.hasName(kRoot))
        return fail("it isn't a scene but " + shown(tag_.name()));
    if (tag_.attribute("version") != kVersion) {
        return fail("it is a scene of version " + shown(tag_.attribute("version")) +
                    "; this stage reads version " + kVersion);
    }
    SceneData data;
    if (!readTime(data) || !readNodes(data) || !link(data))
        return false;
    data.configuration = tag_.child(kConfiguration);
    out = std::move(data);
    return true;
}

} // namespace

SceneData takeScene(const Scene& scene, const Timeline& timeline, const ToolNames& tools,
                    Tag configuration) {
    SceneData data;
    data.time = timeline.getTime();
    data.start = timeline.getStart();
    data.end = timeline.getEnd();
    data.rate = timeline.getRate();
    data.configuration = std::move(configuration);
    std::unordered_map<const StageNode*, std::int32_t> indices;
    for (const auto& node : scene.getNodes()) {
        indices.emplace(node.get(), static_cast<std::int32_t>(indices.size()));
        const auto tool = tools.find(node->getOwner());
        data.nodes.emplace_back().record = {
            node->getName(),         node->getSceneName(), tool != tools.end() ? tool->second : "",
            node->getKind(),         node->getRest(),      node->getRestLens(),
            node->getCurves(),       node->getMesh(),      node->isShown(),
            node->getHighPolyNames()};
    }
    for (std::size_t i = 0; i < data.nodes.size(); ++i) {
        const auto parent = indices.find(scene.getNodes()[i]->getParentNode());
        data.nodes[i].parent = parent != indices.end() ? parent->second : -1;
    }
    return data;
}

void bringScene(const SceneData& data, Scene& scene, Timeline& timeline) {
    timeline.setRate(data.rate);
    timeline.setRange(data.start, data.end);
    timeline.setTime(data.time);
    std::vector<StageNode*> nodes;
    nodes.reserve(data.nodes.size());
    for (const SceneData::Node& node : data.nodes)
        nodes.push_back(&scene.restore(node.record));
    for (std::size_t i = 0; i < nodes.size(); ++i)
        if (data.nodes[i].parent >= 0)
            scene.hang(*nodes[i], nodes[static_cast<std::size_t>(data.nodes[i].parent)]);
}

bool writeSceneFile(const std::string& path, const SceneData& data, std::string& error) {
    std::string text = "<?xml version=\"1.0\"?>\n";
    {
        const Tag tag = toTag(data);
        text += tag.toText("\n", "\t", "") + "\n";
    }
    Tag again;
    Tag::Place fault;
    if (const std::int32_t code = again.parse(text, fault); code != 0) {
        error = "can't write " + path +
                ": it could not be read again: " + Tag::describeFault(code) + " in line " +
                std::to_string(fault.line);
    } else if (text.size() > kMostSceneBytes) {
        error = "can't write " + path + ": the scene is too large";
    } else if (!MVR::Platform::writeFileAtomic(path, text)) {
        error = "can't write " + path + ": " + MVR::Platform::lastFileError();
    } else {
        return true;
    }
    return false;
}

bool readSceneFile(const std::string& path, SceneData& out, std::string& error) {
    std::string text;
    if (!MVR::Platform::readFile(path, text, kMostSceneBytes)) {
        error = "can't read " + path + ": " + MVR::Platform::lastFileError();
        return false;
    }
    Tag tag;
    Tag::Place fault;
    if (const std::int32_t code = tag.parse(text, fault); code != 0) {
        error = path + ":" + std::to_string(fault.line) + ":" + std::to_string(fault.column) +
                ": " + Tag::describeFault(code);
        return false;
    }
    text = std::string();
    SceneReader reader(tag);
    if (!reader.read(out)) {
        error = path + ": " + reader.getError();
        return false;
    }
    return true;
}

} // namespace Stage
