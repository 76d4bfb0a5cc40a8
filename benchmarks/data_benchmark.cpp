// Tag text and the codec, beside their peers. Reading includes freeing the tree.

#include "counted_memory.h"
#include "data/sdk/byte_buffer.h"
#include "data/sdk/tag.h"

#include <benchmark/benchmark.h>
#include <pugixml.hpp>
#include <tinyxml2.h>
#include <zlib.h>

#include <algorithm>
#include <array>
#include <cmath>
#include <random>
#include <string>

namespace {

using MVR::ByteBuffer;
using MVR::Tag;

// A tool as models hold it: nested tools, bound properties, a matrix, a note.
Tag instance(std::mt19937& random, int depth) {
    std::uniform_real_distribution<double> real(-100, 100);
    Tag tool = Tag::element("MVR_Plugin");
    tool.attributeRef("version") = "2.5";
    tool.addChild(Tag::element("type", depth % 2 ? "Free Camera" : "Tracked Object"));
    tool.addChild(Tag::element("name", "Handheld_" + std::to_string(random() % 100)));
    tool.addChild(Tag::element("about", "Left & right < up,\nby hand & \"eye\"."));
    Tag& matrix = tool.addChild(Tag::element("transform"));
    for (int row = 0; row < 4; ++row) {
        Tag& stored = matrix.addChild(
            Tag::element("row", std::array<double, 3>{real(random), real(random), real(random)}));
        stored.attributeRef("index") = std::to_string(row);
    }
    for (const char* name : {"Move X", "Move Y", "Move Z", "Pan", "Tilt", "Roll"}) {
        Tag& property = tool.addChild(Tag::element("property"));
        property.attributeRef("name") = name;
        property.attributeRef("unit") = "\"deg\" & 's'";
        property.addChild(Tag::element("multiplier", real(random)));
        property.addChild(Tag::element("deadzone", 0.1));
        Tag& control = property.addChild(Tag::element("control"));
        control.attributeRef("device") = "OSC";
        control.attributeRef("type") = "/camera/handheld/rotation";
        control.attributeRef("index") = std::to_string(random() % 8);
    }
    for (int child = 0; child < 3 && depth > 0; ++child)
        tool.addChild(instance(random, depth - 1));
    return tool;
}

// About 10 MB of nested tools.
const std::string& nestedText() {
    static const std::string text = [] {
        std::mt19937 random(1);
        Tag root = Tag::element("MVR");
        std::size_t size = 0;
        while (size < 10000000)
            size += root.addChild(instance(random, 4)).toText("\n", "\t", "\t").size();
        return root.toText("\n", "\t", "");
    }();
    return text;
}

// One text of 5 MB in lines.
const std::string& longText() {
    static const std::string text = [] {
        std::string lines;
        for (int line = 0; lines.size() < 4600000; ++line)
            lines +=
                "Line " + std::to_string(line) + " of a log & its numbers < others, all in one.\n";
        return Tag::element("log", lines).toText("", "", "");
    }();
    return text;
}

// The doubles of a mesh as base64, about 10 MB.
const std::string& meshText() {
    static const std::string text = [] {
        constexpr char digits[] =
            "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789+/";
        std::string bytes;
        for (int i = 0; bytes.size() < 7500000; ++i) {
            const double value = std::sin(i * 0.001) * (1 + i % 3);
            bytes.append(reinterpret_cast<const char*>(&value), sizeof value);
        }
        std::string encoded;
        for (std::size_t i = 0; i + 3 <= bytes.size(); i += 3) {
            const auto byte = [&](std::size_t n) {
                return std::uint32_t(std::uint8_t(bytes[i + n]));
            };
            const std::uint32_t group = byte(0) << 16 | byte(1) << 8 | byte(2);
            for (int shift = 18; shift >= 0; shift -= 6)
                encoded += digits[group >> shift & 63];
        }
        return encoded;
    }();
    return text;
}

// What all readers must agree on: names, texts and attributes in file order.
constexpr const char* kKeys[] = {"version", "index", "name", "unit", "device", "type"};

void collect(const Tag& node, std::string& out) {
    out += node.name() + '\n';
    for (const char* key : kKeys)
        out += node.kind() == Tag::Element ? node.attribute(key) + '\n' : "";
    for (std::int32_t i = 0; i < node.childCount(); ++i)
        collect(node.child(i), out);
}

void collect(const tinyxml2::XMLNode& node, std::string& out) {
    out += std::string(node.Value()) + '\n';
    if (const tinyxml2::XMLElement* element = node.ToElement())
        for (const char* key : kKeys)
            out += std::string(element->Attribute(key) ? element->Attribute(key) : "") + '\n';
    for (const tinyxml2::XMLNode* child = node.FirstChild(); child; child = child->NextSibling())
        collect(*child, out);
}

void collect(const pugi::xml_node& node, std::string& out) {
    const bool isElement = node.type() == pugi::node_element;
    out += std::string(isElement ? node.name() : node.value()) + '\n';
    for (const char* key : kKeys)
        out += isElement ? std::string(node.attribute(key).value()) + '\n' : "";
    for (const pugi::xml_node& child : node)
        collect(child, out);
}

template <typename Node>
std::uint32_t hashOfTree(const Node& root) {
    std::string content;
    collect(root, content);
    return hashOf(content);
}

std::uint32_t hashOfWritten(const std::string& text) {
    pugi::xml_document document;
    document.load_buffer(text.data(), text.size());
    return hashOfTree(document.first_child());
}

void readMirvane(benchmark::State& state, bool fresh, const std::string& text) {
    measure(
        state, fresh, [&] { benchmark::DoNotOptimize(Tag(text).childCount()); },
        [&] { return hashOfTree(Tag(text)); });
}

void readTinyxml2(benchmark::State& state, bool fresh, const std::string& text) {
    const auto parse = [&](tinyxml2::XMLDocument& document) {
        if (document.Parse(text.data(), text.size()) != tinyxml2::XML_SUCCESS)
            state.SkipWithError("refused");
    };
    measure(
        state, fresh,
        [&] {
            tinyxml2::XMLDocument document;
            parse(document);
        },
        [&] {
            tinyxml2::XMLDocument document;
            parse(document);
            return hashOfTree(*document.RootElement());
        });
}

void readPugixml(benchmark::State& state, bool fresh, const std::string& text) {
    pugi::set_memory_management_functions(countedAllocate, countedFree);
    const auto parse = [&](pugi::xml_document& document) {
        if (!document.load_buffer(text.data(), text.size()))
            state.SkipWithError("refused");
    };
    measure(
        state, fresh,
        [&] {
            pugi::xml_document document;
            parse(document);
        },
        [&] {
            pugi::xml_document document;
            parse(document);
            return hashOfTree(document.first_child());
        });
}

void writeMirvane(benchmark::State& state, bool fresh, const std::string& text) {
    const Tag tag(text);
    measure(
        state, fresh, [&] { benchmark::DoNotOptimize(tag.toText("\n", "\t", "").size()); },
        [&] { return hashOfWritten(tag.toText("\n", "\t", "")); });
}

void writeTinyxml2(benchmark::State& state, bool fresh, const std::string& text) {
    tinyxml2::XMLDocument document;
    if (document.Parse(text.data(), text.size()) != tinyxml2::XML_SUCCESS)
        state.SkipWithError("refused");
    measure(
        state, fresh,
        [&] {
            tinyxml2::XMLPrinter printer;
            document.Print(&printer);
            benchmark::DoNotOptimize(printer.CStr());
        },
        [&] {
            tinyxml2::XMLPrinter printer;
            document.Print(&printer);
            return hashOfWritten(printer.CStr());
        });
}

void compressMirvane(benchmark::State& state, bool fresh, const std::string& text) {
    const ByteBuffer buffer(text.data(), text.size());
    measure(
        state, fresh, [&] { benchmark::DoNotOptimize(buffer.compress().size()); },
        [&] { return static_cast<std::uint32_t>(buffer.compress().size()); });
}

void decompressMirvane(benchmark::State& state, bool fresh, const std::string& text) {
    const ByteBuffer block = ByteBuffer(text.data(), text.size()).compress();
    measure(
        state, fresh, [&] { benchmark::DoNotOptimize(block.decompress().size()); },
        [&] {
            const ByteBuffer out = block.decompress();
            return hashOf({reinterpret_cast<const char*>(out.data()), out.size()});
        });
}

void compressZlib(benchmark::State& state, bool fresh, const std::string& text) {
    Bytes out;
    measure(state, fresh, [&] {
        benchmark::DoNotOptimize(deflateHuffman(text, out));
        out.reset();
    });
}

void decompressZlib(benchmark::State& state, bool fresh, const std::string& text) {
    Bytes block;
    const std::size_t blockSize = deflateHuffman(text, block);
    Bytes out;
    const auto work = [&] {
        out.reset(new Bytef[text.size()]);
        uLongf size = text.size();
        if (uncompress(out.get(), &size, block.get(), blockSize) != Z_OK)
            state.SkipWithError("refused");
    };
    measure(
        state, fresh,
        [&] {
            work();
            out.reset();
        },
        [&] {
            work();
            return hashOf({reinterpret_cast<const char*>(out.get()), text.size()});
        });
}

using Measured = void (*)(benchmark::State&, bool, const std::string&);

void add(const std::string& topic, const char* who, Measured measured, const std::string& text) {
    for (const bool fresh : {false, true})
        benchmark::RegisterBenchmark((topic + (fresh ? "_fresh/" : "_warm/") + who).c_str(),
                                     measured, fresh, std::cref(text))
            ->Unit(benchmark::kMillisecond);
}

const bool registered = [] {
    for (const bool nested : {true, false}) {
        const std::string& text = nested ? nestedText() : longText();
        const std::string suffix = nested ? "nested" : "text";
        add("tag_read_" + suffix, "mirvane", readMirvane, text);
        add("tag_read_" + suffix, "tinyxml2", readTinyxml2, text);
        add("tag_read_" + suffix, "pugixml", readPugixml, text);
        add("tag_write_" + suffix, "mirvane", writeMirvane, text);
        add("tag_write_" + suffix, "tinyxml2", writeTinyxml2, text);
    }
    for (const bool nested : {true, false}) {
        const std::string& text = nested ? nestedText() : meshText();
        const std::string suffix = nested ? "nested" : "mesh";
        add("compress_" + suffix, "mirvane", compressMirvane, text);
        add("compress_" + suffix, "zlib", compressZlib, text);
        add("decompress_" + suffix, "mirvane", decompressMirvane, text);
        add("decompress_" + suffix, "zlib", decompressZlib, text);
    }
    return true;
}();

} // namespace
