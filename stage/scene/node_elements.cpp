#include "stage/scene/node_elements.h"

#include "core/contract/adaptor_interface.h"
#include "stage/base/text.h"
#include "stage/scene/lens.h"
#include "stage/scene/tag_numbers.h"

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <cstdint>
#include <memory>
#include <string_view>

namespace Stage {

namespace {

using MVR::Tag;

struct Writing {
    const NodeRecord& record;
    const std::string& parent;
    Tag& out;
};

struct Reading {
    const Tag& tag;
    NodeRecord& record;
    std::string& parent;
    std::string& reason;

    [[nodiscard]] const std::string& text(const char* word) const {
        return tag.child(word).value();
    }
    bool fail(const std::string& why) {
        reason = why;
        return false;
    }
};

/// One element of a node, or several with the same word.
struct NodeElement {
    const char* word;
    void (*write)(const char* word, Writing& node);
    /// Returns false, with the reason, on a fault.
    bool (*read)(const char* word, Reading& node);
};

/// A text of blanks alone would not be read again.
Tag textTag(const char* word, const std::string& text) {
    return Tag::element(word, trimmed(text).empty() ? "" : text);
}

struct Kind {
    const char* word;
    std::intptr_t kind;
};
/// Kinds of node; any other is written as its number.
constexpr Kind kKinds[] = {
    {"helper", MVR::kNodeHelper}, {"camera", MVR::kNodeCamera}, {"light", MVR::kNodeLight}};

void writeKind(const char* word, Writing& node) {
    std::string text = std::to_string(node.record.kind);
    for (const Kind& known : kKinds)
        if (known.kind == node.record.kind)
            text = known.word;
    node.out.addChild(Tag::element(word, text));
}

bool readKind(const char* word, Reading& node) {
    const std::string& text = node.text(word);
    for (const Kind& known : kKinds) {
        if (text == known.word) {
            node.record.kind = known.kind;
            return true;
        }
    }
    int number = 0;
    if (!toNumber(text, number))
        return node.fail("there is no kind " + shown(text));
    node.record.kind = number;
    return true;
}

void writeVisible(const char* word, Writing& node) {
    node.out.addChild(Tag::element(word, node.record.isVisible ? "true" : "false"));
}

bool readVisible(const char* word, Reading& node) {
    const std::string& text = node.text(word);
    node.record.isVisible = text == "true";
    return text == "true" || text == "false" ||
           node.fail(std::string("\"") + word + "\" must be true or false, not " + shown(text));
}

void writeLens(const char* word, Writing& node) {
    if (node.record.kind == MVR::kNodeCamera)
        node.out.addChild(toTag(word, node.record.lens));
}

/// Older files have no lens.
bool readLens(const char* word, Reading& node) {
    if (node.tag.child(word).isEmpty())
        return true;
    Lens& lens = node.record.lens;
    return readNumbers(node.tag, word, lens, node.reason) &&
           (std::all_of(lens.begin(), lens.end(), isLensNumber) ||
            node.fail(std::string("\"") + word + "\" must hold numbers above 0, not " +
                      shown(node.text(word))));
}

void writeCurves(const char* word, Writing& node) {
    for (std::size_t i = 0; i < kCurveCount; ++i) {
        const Curve& curve = node.record.curves[i];
        if (curve.isEmpty())
            continue;
        std::string text;
        for (const Key& key : curve.getKeys())
            text += (text.empty() ? "" : " ") + toText(key.time) + " " + toText(key.value);
        Tag& tag = node.out.addChild(Tag::element(word, text));
        tag.attributeRef("name") = kCurveNames[i];
    }
}

bool readCurve(const Tag& tag, Reading& node) {
    const std::string name = tag.attribute("name");
    std::size_t index = 0;
    while (index < kCurveCount && name != kCurveNames[index])
        ++index;
    if (index == kCurveCount)
        return node.fail("there is no curve " + shown(name));
    Curve& curve = node.record.curves[index];
    if (!curve.isEmpty())
        return node.fail("the curve " + shown(name) + " appears twice");
    std::string_view text = tag.value();
    while (!(text = trimmed(text)).empty()) {
        const std::size_t number = curve.getKeys().size() + 1;
        const auto failKey = [&](const char* reason) {
            return node.fail("curve " + shown(name) + ", key " + std::to_string(number) + ": " +
                             reason);
        };
        Key key{};
        // Whatever a tool wrote is read back, even a number that isn't finite.
        if (!takeNumber(text, key.time) || !takeNumber(text, key.value))
            return failKey("a time and a value are needed");
        if (!std::isfinite(key.time))
            return failKey("the time is not finite");
        if (!curve.isEmpty() && key.time - curve.getKeys().back().time <= kSameTimeSeconds)
            return failKey("the time doesn't rise");
        curve.setKey(key.time, key.value);
    }
    return true;
}

bool readCurves(const char* word, Reading& node) {
    for (std::int32_t i = 0; i < node.tag.childCount(); ++i)
        if (node.tag.child(i).hasName(word) && !readCurve(node.tag.child(i), node))
            return false;
    return true;
}

bool readMesh(const char* word, Reading& node) {
    if (node.tag.childCount(word) == 0)
        return true;
    node.record.mesh = std::make_shared<const MVR::CMesh>(node.tag.child(word));
    return !node.record.mesh->vertices.empty() || node.fail("the mesh can't be read");
}

/// The element of a text, which isn't written if it is empty and `isOptional`.
template <std::string NodeRecord::*Field, bool IsOptional>
constexpr NodeElement textElement(const char* name) {
    return {name,
            [](const char* word, Writing& node) {
                if (!IsOptional || !(node.record.*Field).empty())
                    node.out.addChild(textTag(word, node.record.*Field));
            },
            [](const char* word, Reading& node) {
                node.record.*Field = node.text(word);
                return true;
            }};
}

/// The element of a part of the transform at rest.
template <auto Field>
constexpr NodeElement restElement(const char* name) {
    return {name,
            [](const char* word, Writing& node) {
                node.out.addChild(toTag(word, node.record.rest.*Field));
            },
            [](const char* word, Reading& node) {
                return readNumbers(node.tag, word, node.record.rest.*Field, node.reason);
            }};
}

/// In the order of the file. Names are texts: an attribute can't hold every byte.
constexpr NodeElement kElements[] = {
    textElement<&NodeRecord::sceneName, false>("name"),
    {"kind", writeKind, readKind},
    textElement<&NodeRecord::tool, true>("tool"),
    textElement<&NodeRecord::name, false>("toolnode"),
    {"parent",
     [](const char* word, Writing& node) {
         if (!node.parent.empty())
             node.out.addChild(Tag::element(word, node.parent));
     },
     [](const char* word, Reading& node) {
         node.parent = node.text(word);
         return true;
     }},
    {"visible", writeVisible, readVisible},
    restElement<&Transform::position>("position"),
    restElement<&Transform::rotation>("rotation"),
    restElement<&Transform::scale>("scale"),
    {"lens", writeLens, readLens},
    {"highpoly",
     [](const char* word, Writing& node) {
         for (const std::string& name : node.record.highPolyNames)
             node.out.addChild(textTag(word, name));
     },
     [](const char* word, Reading& node) {
         for (std::int32_t i = 0; i < node.tag.childCount(); ++i)
             if (node.tag.child(i).hasName(word))
                 node.record.highPolyNames.push_back(node.tag.child(i).value());
         return true;
     }},
    {"CMesh",
     [](const char*, Writing& node) {
         if (node.record.mesh != nullptr)
             node.out.addChild(node.record.mesh->write(false));
     },
     readMesh},
    {"curve", writeCurves, readCurves},
};

} // namespace

Tag writeNode(const NodeRecord& record, const std::string& parent) {
    Tag tag = Tag::element(kNodeWord);
    Writing node{record, parent, tag};
    for (const NodeElement& element : kElements)
        element.write(element.word, node);
    return tag;
}

bool readNode(const Tag& tag, NodeRecord& record, std::string& parent, std::string& reason) {
    Reading node{tag, record, parent, reason};
    for (const NodeElement& element : kElements)
        if (!element.read(element.word, node))
            return false;
    return true;
}

} // namespace Stage
