// A mesh to a model file and back, beside libraries that do the same by parts: OpenSSL's base64,
// pugixml's tree and zlib's Huffman codes. The memory is compared with the size of our file: the
// mesh that is saved counts, and the one that is read.

#include "counted_memory.h"
#include "data/sdk/byte_buffer.h"
#include "plugins/contract/c_mesh.h"

#include <benchmark/benchmark.h>
#include <openssl/evp.h>
#include <pugixml.hpp>

#include <array>
#include <cmath>
#include <cstring>
#include <filesystem>
#include <fstream>
#include <optional>
#include <string>
#include <string_view>

namespace {

using MVR::ByteBuffer;
using MVR::CMesh;
using MVR::Tag;

constexpr int kSide = 1000; // vertices along an edge

// A hilly ground of square faces.
const CMesh& ground() {
    static const CMesh mesh = [] {
        CMesh result;
        result.vertices.reserve(kSide * kSide);
        result.faces.reserve((kSide - 1) * (kSide - 1) * 4);
        for (int row = 0; row < kSide; ++row)
            for (int column = 0; column < kSide; ++column)
                result.vertices.push_back({column * 0.37 - 180,
                                           std::sin(row * 0.01 + column * 0.003),
                                           row * 0.37 - std::cos(column * 0.02)});
        for (int row = 0; row + 1 < kSide; ++row)
            for (int column = 0; column + 1 < kSide; ++column)
                for (int corner : {0, 1, kSide + 1, kSide})
                    result.faces.push_back(row * kSide + column + corner);
        return result;
    }();
    return mesh;
}

template <typename T>
std::string_view bytesOf(const std::vector<T>& list) {
    return {reinterpret_cast<const char*>(list.data()), list.size() * sizeof(T)};
}

std::uint32_t hashOfMesh(const CMesh& mesh) {
    return hashOf(bytesOf(mesh.vertices)) ^ hashOf(bytesOf(mesh.faces));
}

std::string filePath(const char* who) {
    return (std::filesystem::temp_directory_path() / ("mirvane_mesh_" + std::string(who))).string();
}

// The tree that saving one tool with one node makes.
bool saveMirvane(const std::string& path, std::optional<CMesh>& mesh) {
    Tag model = Tag::element("MVR_Plugin");
    model.attributeRef("version") = "2.5";
    model.addChild(Tag::element("type", "Ground"));
    Tag& node = model.addChild(Tag::element("node"));
    node.attributeRef("name") = "Ground_1";
    node.addChild(mesh->write(false));
    mesh.reset(); // As a save does: it holds the host's mesh only so long.
    return ByteBuffer::compressed(model.toText("\r\n", "\t", "")).writeFile(path);
}

CMesh loadMirvane(const std::string& path) {
    Tag model;
    {
        ByteBuffer file;
        if (!file.readFile(path) || model.parse(file.decompress().view()) != 0)
            return CMesh();
    }
    return CMesh(model.child("node").child("CMesh"));
}

void fileMirvane(benchmark::State& state, bool fresh) {
    const std::string path = filePath("mirvane.prm");
    const CMesh& source = ground();
    measure(
        state, fresh,
        [&] {
            std::optional<CMesh> mesh(source);
            if (!saveMirvane(path, mesh))
                state.SkipWithError("not written");
            benchmark::DoNotOptimize(loadMirvane(path).vertices.data());
        },
        [&] { return hashOfMesh(loadMirvane(path)); });
    std::filesystem::remove(path);
}

using Chars = std::unique_ptr<char[]>;

template <typename T>
void encode(pugi::xml_node node, const char* name, const std::vector<T>& list) {
    const std::string_view bytes = bytesOf(list);
    const Chars text(new char[(bytes.size() + 2) / 3 * 4 + 1]);
    EVP_EncodeBlock(reinterpret_cast<unsigned char*>(text.get()),
                    reinterpret_cast<const unsigned char*>(bytes.data()),
                    static_cast<int>(bytes.size()));
    node.append_child(name).text().set(text.get());
}

template <typename T>
void decode(const pugi::xml_node& node, std::vector<T>& list) {
    const char* text = node.text().get();
    const std::size_t size = std::strlen(text);
    static_assert(sizeof(T) % 4 == 0);
    list.resize((size / 4 * 3 + sizeof(T) - 1) / sizeof(T)); // Padding counts as bytes.
    const int bytes =
        EVP_DecodeBlock(reinterpret_cast<unsigned char*>(list.data()),
                        reinterpret_cast<const unsigned char*>(text), static_cast<int>(size));
    list.resize(static_cast<std::size_t>(std::max(bytes, 0)) / sizeof(T));
}

struct StringWriter : pugi::xml_writer {
    std::string text;
    void write(const void* data, std::size_t size) override {
        text.append(static_cast<const char*>(data), size);
    }
};

void saveLibraries(const std::string& path, const CMesh& mesh) {
    StringWriter writer;
    writer.text.reserve(bytesOf(mesh.vertices).size() * 3);
    {
        pugi::xml_document document;
        pugi::xml_node model = document.append_child("MVR_Plugin");
        model.append_child("type").text().set("Ground");
        pugi::xml_node node = model.append_child("node");
        encode(node, "vertices", mesh.vertices);
        encode(node, "faces", mesh.faces);
        document.save(writer, "\t", pugi::format_raw);
    }
    Bytes block;
    const std::uint64_t size[2] = {deflateHuffman(writer.text, block), writer.text.size()};
    std::ofstream file(path, std::ios::binary);
    file.write(reinterpret_cast<const char*>(size), sizeof size);
    file.write(reinterpret_cast<const char*>(block.get()), static_cast<std::streamsize>(size[0]));
}

CMesh loadLibraries(const std::string& path) {
    std::ifstream file(path, std::ios::binary);
    std::uint64_t size[2];
    file.read(reinterpret_cast<char*>(size), sizeof size);
    Bytes block(new Bytef[size[0]]);
    file.read(reinterpret_cast<char*>(block.get()), static_cast<std::streamsize>(size[0]));
    Bytes text(new Bytef[size[1]]);
    uLongf textSize = size[1];
    CMesh mesh;
    pugi::xml_document document;
    if (uncompress(text.get(), &textSize, block.get(), size[0]) != Z_OK)
        return mesh;
    block.reset();
    if (!document.load_buffer_inplace(text.get(), textSize))
        return mesh;
    const pugi::xml_node node = document.first_child().child("node");
    decode(node.child("vertices"), mesh.vertices);
    decode(node.child("faces"), mesh.faces);
    return mesh;
}

void fileLibraries(benchmark::State& state, bool fresh) {
    pugi::set_memory_management_functions(countedAllocate, countedFree);
    const std::string path = filePath("libraries.bin");
    const CMesh& source = ground();
    measure(
        state, fresh,
        [&] {
            const CMesh mesh(source);
            saveLibraries(path, mesh);
            benchmark::DoNotOptimize(loadLibraries(path).vertices.data());
        },
        [&] { return hashOfMesh(loadLibraries(path)); });
    std::filesystem::remove(path);
}

// Writes and reads the bytes of our file; the memory of this is the file's size.
void fileAlone(benchmark::State& state, bool fresh) {
    const std::string path = filePath("alone.prm");
    std::optional<CMesh> mesh(ground());
    if (!saveMirvane(path, mesh))
        state.SkipWithError("not written");
    const std::uintmax_t size = std::filesystem::file_size(path);
    measure(state, fresh, [&] {
        const Chars bytes(new char[size]);
        std::ifstream(path, std::ios::binary).read(bytes.get(), static_cast<std::streamsize>(size));
        std::ofstream(path, std::ios::binary)
            .write(bytes.get(), static_cast<std::streamsize>(size));
    });
    state.counters["peak_bytes"] = static_cast<double>(size);
    std::filesystem::remove(path);
}

const bool registered = [] {
    for (const bool fresh : {false, true}) {
        const std::string topic = fresh ? "mesh_file_fresh/" : "mesh_file_warm/";
        const auto add = [&](const char* who, void (*measured)(benchmark::State&, bool)) {
            benchmark::RegisterBenchmark((topic + who).c_str(), measured, fresh)
                ->Unit(benchmark::kMillisecond);
        };
        add("mirvane", fileMirvane);
        add("libraries", fileLibraries);
        add("file_alone", fileAlone);
    }
    return true;
}();

} // namespace
