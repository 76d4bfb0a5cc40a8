#include "stage/scene/scene_file.h"

#include "platform/sdk/files.h"
#include "stage/base/text.h"
#include "stage/scene/scene_format.h"

#include <algorithm>
#include <charconv>
#include <cmath>
#include <string_view>
#include <unordered_map>
#include <utility>

namespace Stage {

namespace {

using MVR::Tag;

constexpr std::size_t kMostShown = 40; // bytes of a text in a message

/// Turns a tree into a scene's data and checks all of it. The first fault ends the reading.
class SceneReader {
public:
    explicit SceneReader(const Tag& tag) : tag_(tag) {}

    [[nodiscard]] bool read(SceneData& out);
    [[nodiscard]] const std::string& getError() const { return error_; }

private:
    bool fail(const std::string& reason) {
        error_ = place_ + reason;
        return false;
    }
    bool readNumbers(const Tag& tag, const char* name, double* out, std::size_t count);
    bool readTime(SceneData& data);
    bool readNode(const Tag& tag, NodeRecord& record);
    bool readKind(const std::string& text, NodeRecord& record);
    bool readLens(const Tag& tag, NodeRecord& record);
    bool readCurve(const Tag& tag, NodeRecord& record);
    bool link(SceneData& data);
    bool checkHierarchy(const SceneData& data);

    const Tag& tag_;
    std::string place_;
    std::string error_;
    std::vector<std::string> parents_; // by node; empty for a root
};

/// Takes the next number from the front of a text; false if there is none.
bool takeNumber(std::string_view& text, double& out) {
    const std::size_t blanks = std::min(text.find_first_not_of(" \t\r\n"), text.size());
    text.remove_prefix(blanks);
    const auto [end, fault] = std::from_chars(text.data(), text.data() + text.size(), out);
    if (fault != std::errc()) {
        return false;
    }
    text.remove_prefix(static_cast<std::size_t>(end - text.data()));
    return true;
}

std::string shown(std::string_view text) {
    const bool isLong = text.size() > kMostShown;
    return "\"" + toUtf8(text.substr(0, kMostShown)) + (isLong ? "...\"" : "\"");
}

bool SceneReader::readNumbers(const Tag& tag, const char* name, double* out, std::size_t count) {
    const Tag& element = tag.child(name);
    if (element.isEmpty()) {
        return fail(std::string("it has no \"") + name + "\"");
    }
    std::string_view text = element.value();
    for (std::size_t i = 0; i < count; ++i) {
        if (!takeNumber(text, out[i]) || !std::isfinite(out[i])) {
            return fail(std::string("\"") + name + "\" is to hold " + std::to_string(count) +
                        (count == 1 ? " number, not " : " numbers, not ") + shown(element.value()));
        }
    }
    return trimmed(text).empty() || fail(std::string("\"") + name + "\" holds " +
                                         shown(trimmed(text)) + " behind its numbers");
}

bool SceneReader::readTime(SceneData& data) {
    if (!readNumbers(tag_, "time", &data.time, 1) || !readNumbers(tag_, "start", &data.start, 1) ||
        !readNumbers(tag_, "end", &data.end, 1) || !readNumbers(tag_, "rate", &data.rate, 1)) {
        return false;
    }
    for (const double time : {data.time, data.start, data.end}) {
        if (std::fabs(time) > kLongestTime) {
            return fail("the time " + toText(time) + " is too far from 0");
        }
    }
    if (data.rate < kLeastRate || data.rate > kHighestRate) {
        return fail("a rate of " + toText(data.rate) + " frames a second can't be");
    }
    return data.start <= data.end || fail("the range ends before it starts");
}

bool SceneReader::readKind(const std::string& text, NodeRecord& record) {
    for (const SceneFormat::Kind& known : SceneFormat::kKinds) {
        if (text == known.word) {
            record.kind = known.kind;
            return true;
        }
    }
    int number = 0;
    if (!toNumber(text, number)) {
        return fail("there is no kind " + shown(text));
    }
    record.kind = number;
    return true;
}

bool SceneReader::readLens(const Tag& tag, NodeRecord& record) {
    const char* const name = SceneFormat::kLens;
    if (tag.child(name).isEmpty()) {
        return true;
    }
    return readNumbers(tag, name, record.lens.data(), record.lens.size()) &&
           (std::all_of(record.lens.begin(), record.lens.end(), isLensNumber) ||
            fail(std::string("\"") + name + "\" is to hold numbers above 0, not " +
                 shown(tag.child(name).value())));
}

bool SceneReader::readCurve(const Tag& tag, NodeRecord& record) {
    const std::string name = tag.attribute("name");
    std::size_t index = 0;
    while (index < kCurveCount && name != kCurveNames[index]) {
        ++index;
    }
    if (index == kCurveCount) {
        return fail("there is no curve " + shown(name));
    }
    Curve& curve = record.curves[index];
    if (!curve.isEmpty()) {
        return fail("the curve " + shown(name) + " is there twice");
    }
    std::string_view text = tag.value();
    while (!(text = trimmed(text)).empty()) {
        const std::size_t number = curve.getKeys().size() + 1;
        const auto failKey = [&](const char* reason) {
            return fail("curve " + shown(name) + ", key " + std::to_string(number) + ": " + reason);
        };
        Key key{};
        // What a tool wrote comes back, even if it was no finite number.
        if (!takeNumber(text, key.time) || !takeNumber(text, key.value)) {
            return failKey("a time and a value are wanted");
        }
        if (!std::isfinite(key.time)) {
            return failKey("the time is not finite");
        }
        if (!curve.isEmpty() && key.time - curve.getKeys().back().time <= kSameTimeSeconds) {
            return failKey("the time doesn't rise");
        }
        curve.setKey(key.time, key.value);
    }
    return true;
}

bool SceneReader::readNode(const Tag& tag, NodeRecord& record) {
    record.sceneName = tag.child("name").value();
    record.name = tag.child("toolnode").value();
    record.tool = tag.child("tool").value();
    place_ += " " + shown(record.sceneName) + ": ";
    const std::string& visible = tag.child("visible").value();
    if (visible != "true" && visible != "false") {
        return fail("\"visible\" is to be true or false, not " + shown(visible));
    }
    record.isVisible = visible == "true";
    if (!readKind(tag.child("kind").value(), record) ||
        !readNumbers(tag, "position", record.rest.position.data(), 3) ||
        !readNumbers(tag, "rotation", record.rest.rotation.data(), 4) ||
        !readNumbers(tag, "scale", record.rest.scale.data(), 3) || !readLens(tag, record)) {
        return false;
    }
    for (std::int32_t i = 0; i < tag.childCount(); ++i) {
        const Tag& child = tag.child(i);
        if (child.hasName("highpoly")) {
            record.highPolyNames.push_back(child.value());
        } else if (child.hasName("curve") && !readCurve(child, record)) {
            return false;
        } else if (child.hasName("CMesh")) {
            record.mesh = std::make_shared<const MVR::CMesh>(child);
            if (record.mesh->vertices.empty()) {
                return fail("the mesh can't be read");
            }
        }
    }
    parents_.push_back(tag.child("parent").value());
    return true;
}

/// Finds the parents by their names, which must be unique.
bool SceneReader::link(SceneData& data) {
    std::unordered_map<std::string_view, std::int32_t> byName;
    for (std::size_t i = 0; i < data.nodes.size(); ++i) {
        const std::string& name = data.nodes[i].record.sceneName;
        if (!byName.emplace(name, static_cast<std::int32_t>(i)).second) {
            return fail("two nodes are called " + shown(name));
        }
    }
    for (std::size_t i = 0; i < data.nodes.size(); ++i) {
        if (parents_[i].empty()) {
            continue;
        }
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
    // Each node is reached once: the way up ends at a root, or at a node of an earlier way.
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
    if (!tag_.hasName(SceneFormat::kRoot)) {
        return fail("it is no scene but " + shown(tag_.name()));
    }
    if (tag_.attribute("version") != SceneFormat::kVersion) {
        return fail("it is a scene of version " + shown(tag_.attribute("version")) +
                    "; this stage reads version " + SceneFormat::kVersion);
    }
    SceneData data;
    if (!readTime(data)) {
        return false;
    }
    for (std::int32_t i = 0; i < tag_.childCount(); ++i) {
        if (!tag_.child(i).hasName("node")) {
            continue;
        }
        if (data.nodes.size() == kMostSceneNodes) {
            return fail("it has more than " + std::to_string(kMostSceneNodes) + " nodes");
        }
        place_ = "node " + std::to_string(data.nodes.size() + 1);
        if (!readNode(tag_.child(i), data.nodes.emplace_back().record)) {
            return false;
        }
    }
    place_.clear();
    if (!link(data)) {
        return false;
    }
    data.configuration = tag_.child("MVR");
    out = std::move(data);
    return true;
}

} // namespace

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
