#include "stage/scene/scene_file.h"

#include "platform/sdk/files.h"
#include "stage/base/text.h"
#include "stage/scene/scene.h"
#include "stage/scene/scene_format.h"
#include "stage/scene/timeline.h"
#include "stage/scene/undo_list.h"

#include <unordered_map>
#include <utility>

namespace Stage {

namespace {

using MVR::Tag;

/// Text of blanks alone would not be read again.
Tag toTag(const char* name, const std::string& text) {
    return Tag::element(name, trimmed(text).empty() ? "" : text);
}

template <typename Numbers>
Tag toTag(const char* name, const Numbers& numbers) {
    std::string text;
    for (const double number : numbers) {
        text += (text.empty() ? "" : " ") + toText(number);
    }
    return Tag::element(name, text);
}

Tag toTag(std::size_t curve, const std::vector<Key>& keys) {
    std::string text;
    for (const Key& key : keys) {
        text += (text.empty() ? "" : " ") + toText(key.time) + " " + toText(key.value);
    }
    Tag tag = Tag::element("curve", text);
    tag.attributeRef("name") = kCurveNames[curve];
    return tag;
}

std::string toKindText(std::intptr_t kind) {
    for (const SceneFormat::Kind& known : SceneFormat::kKinds) {
        if (known.kind == kind) {
            return known.word;
        }
    }
    return std::to_string(kind);
}

Tag toTag(const SceneData::Node& node, const SceneData& data) {
    const NodeRecord& record = node.record;
    Tag tag = Tag::element("node");
    // Names are texts: an attribute can't hold every byte.
    tag.addChild(Tag::element("name", record.sceneName));
    tag.addChild(Tag::element("kind", toKindText(record.kind)));
    if (!record.tool.empty()) {
        tag.addChild(toTag("tool", record.tool));
    }
    tag.addChild(toTag("toolnode", record.name));
    if (node.parent >= 0) {
        const auto parent = static_cast<std::size_t>(node.parent);
        tag.addChild(Tag::element("parent", data.nodes[parent].record.sceneName));
    }
    tag.addChild(Tag::element("visible", record.isVisible ? "true" : "false"));
    tag.addChild(toTag("position", record.rest.position));
    tag.addChild(toTag("rotation", record.rest.rotation));
    tag.addChild(toTag("scale", record.rest.scale));
    if (record.kind == MVR::kNodeCamera) {
        tag.addChild(toTag(SceneFormat::kLens, record.lens));
    }
    for (const std::string& name : record.highPolyNames) {
        tag.addChild(toTag("highpoly", name));
    }
    if (record.mesh != nullptr) {
        tag.addChild(record.mesh->write(false));
    }
    for (std::size_t i = 0; i < kCurveCount; ++i) {
        if (!record.curves[i].isEmpty()) {
            tag.addChild(toTag(i, record.curves[i].getKeys()));
        }
    }
    return tag;
}

Tag toTag(const SceneData& data) {
    Tag tag = Tag::element(SceneFormat::kRoot);
    tag.attributeRef("version") = SceneFormat::kVersion;
    tag.addChild(Tag::element("time", toText(data.time)));
    tag.addChild(Tag::element("start", toText(data.start)));
    tag.addChild(Tag::element("end", toText(data.end)));
    tag.addChild(Tag::element("rate", toText(data.rate)));
    for (const SceneData::Node& node : data.nodes) {
        tag.addChild(toTag(node, data));
    }
    tag.addChild(data.configuration);
    return tag;
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
    for (const SceneData::Node& node : data.nodes) {
        nodes.push_back(&scene.restore(node.record));
    }
    for (std::size_t i = 0; i < nodes.size(); ++i) {
        if (data.nodes[i].parent >= 0) {
            scene.hang(*nodes[i], nodes[static_cast<std::size_t>(data.nodes[i].parent)]);
        }
    }
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
        error = "can't write " + path + ": it could not be read again, for " +
                Tag::describeFault(code) + " in its line " + std::to_string(fault.line);
    } else if (text.size() > kMostSceneBytes) {
        error = "can't write " + path + ": the scene is too large";
    } else if (!MVR::Platform::writeFileAtomic(path, text)) {
        error = "can't write " + path + ": " + MVR::Platform::lastFileError();
    } else {
        return true;
    }
    return false;
}

} // namespace Stage
