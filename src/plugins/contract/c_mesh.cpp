#include "plugins/contract/c_mesh.h"

#include "core/base/sdk/log.h"
#include "data/base64_codec.h"
#include "data/data_chunk_view.h"
#include "data/little_endian.h"
#include "data/number_reader.h"
#include "data/sdk/base64_buffer.h"

#include <algorithm>
#include <optional>
#include <string_view>
#include <utility>

namespace MVR {
namespace {

using Util::DataChunkView;
using Util::kChunkHeadSize;
using Util::kMaxFlatSize;
using Vector = std::array<double, 3>;

constexpr std::string_view kName = "CMesh";
constexpr std::size_t kChildren = 8; // Four counts, four payloads.
constexpr std::size_t kCountSize = 4;

// The names of a list in both forms.
struct ListNames {
    std::string_view count;
    std::string_view entries;
    std::string_view textList;
};

constexpr ListNames kVertices{"numVertexes", "vertex", "vertexdata"};
constexpr ListNames kTextureCoordinates{"numTexCoords", "texcoord", "texcoorddata"};
constexpr ListNames kFaces{"numFaces", "face", "facedata"};
constexpr ListNames kTextureFaces{"numTFaces", "tface", "tfacedata"};

// The bytes of an entry in the binary form.
template <typename T>
constexpr std::size_t kEntrySize = sizeof(T);
static_assert(kEntrySize<Vector> == 24 && kEntrySize<std::int32_t> == 4);

void load(const std::uint8_t* from, Vector& to) {
    for (double& number : to) {
        number = loadLittleDouble(from);
        from += sizeof number;
    }
}

void load(const std::uint8_t* from, std::int32_t& to) {
    to = static_cast<std::int32_t>(loadLittle32(from));
}

void store(std::uint8_t* to, const Vector& from) {
    for (double number : from) {
        storeLittleDouble(to, number);
        to += sizeof number;
    }
}

void store(std::uint8_t* to, std::int32_t from) {
    storeLittle32(to, static_cast<std::uint32_t>(from));
}

// Writes the flat form of a mesh's chunks as text while it is made: beside a large mesh there is no
// room for a copy of it.
class MeshWriter {
public:
    explicit MeshWriter(std::size_t flatSize) : text_(flatSize) {}

    void head(std::string_view name, std::size_t dataSize, std::size_t childCount) {
        std::uint8_t bytes[kChunkHeadSize];
        Util::storeChunkHead(bytes, dataSize, childCount, name.size());
        text_.append(bytes, sizeof bytes);
        text_.append(name.data(), name.size());
    }

    void count(std::string_view name, std::size_t value) {
        std::uint8_t bytes[kCountSize];
        storeLittle32(bytes, static_cast<std::uint32_t>(value));
        head(name, sizeof bytes, 0);
        text_.append(bytes, sizeof bytes);
    }

    template <typename T>
    void entries(std::string_view name, const std::vector<T>& list) {
        constexpr std::size_t kAtOnce = 128;
        head(name, list.size() * kEntrySize<T>, 0);
        std::uint8_t bytes[kAtOnce * kEntrySize<T>];
        for (std::size_t done = 0; done < list.size();) {
            const std::size_t piece = std::min(kAtOnce, list.size() - done);
            for (std::size_t i = 0; i < piece; ++i)
                store(bytes + i * kEntrySize<T>, list[done + i]);
            text_.append(bytes, piece * kEntrySize<T>);
            done += piece;
        }
    }

    std::string finish() { return text_.finish(); }

private:
    Base64Writer text_;
};

template <typename T>
std::size_t flatSize(const ListNames& names, const std::vector<T>& list) {
    return 2 * kChunkHeadSize + names.count.size() + kCountSize + names.entries.size() +
           list.size() * kEntrySize<T>;
}

std::optional<std::size_t> readCount(const DataChunkView& root, const ListNames& names) {
    const DataChunkView* chunk = root.child(names.count);
    if (!chunk || chunk->size != kCountSize)
        return std::nullopt;
    return loadLittle32(chunk->data);
}

// Returns null, as if it were missing, if the payload's size doesn't match the count.
template <typename T>
const std::uint8_t* findEntries(const DataChunkView& root, const ListNames& names,
                                std::optional<std::size_t> count) {
    const DataChunkView* chunk = root.child(names.entries);
    if (!chunk || !count || chunk->size % kEntrySize<T> != 0 ||
        chunk->size / kEntrySize<T> != *count)
        return nullptr;
    return chunk->data;
}

template <typename T>
void loadEntries(const std::uint8_t* from, std::size_t count, std::vector<T>& list) {
    list.resize(count);
    for (T& entry : list) {
        load(from, entry);
        from += kEntrySize<T>;
    }
}

// Returns false, and leaves the mesh as it was, if a part is missing or damaged.
bool readBinary(const std::string& text, CMesh& mesh) {
    const Base64Buffer bytes(text);
    DataChunkView root;
    // Damage after what is asked for below does no harm.
    static_cast<void>(root.parse(bytes.data(), bytes.data() + bytes.size()));
    const auto vertexCount = readCount(root, kVertices);
    const auto coordinateCount = readCount(root, kTextureCoordinates);
    const auto faceCount = readCount(root, kFaces);
    const auto textureFaceCount = readCount(root, kTextureFaces);
    const auto* vertices = findEntries<Vector>(root, kVertices, vertexCount);
    const auto* coordinates = findEntries<Vector>(root, kTextureCoordinates, coordinateCount);
    const auto* faces = findEntries<std::int32_t>(root, kFaces, faceCount);
    const auto* textureFaces = findEntries<std::int32_t>(root, kTextureFaces, textureFaceCount);
    if (!vertices || !coordinates || !faces || !textureFaces)
        return false;
    loadEntries(vertices, *vertexCount, mesh.vertices);
    loadEntries(coordinates, *coordinateCount, mesh.textureCoordinates);
    loadEntries(faces, *faceCount, mesh.faces);
    loadEntries(textureFaces, *textureFaceCount, mesh.textureFaces);
    return true;
}

Vector readEntry(const Tag& entry, Vector*) {
    return readVector(entry.value());
}

std::int32_t readEntry(const Tag& entry, std::int32_t*) {
    std::int32_t number = 0;
    entry.child(0).as(number);
    return number;
}

template <typename T>
void readText(const Tag& mesh, const ListNames& names, std::vector<T>& list) {
    const Tag& entries = mesh.child(names.textList);
    for (std::int32_t i = 0; i < entries.childCount(); ++i)
        if (const Tag& entry = entries.child(i); entry.hasName(names.entries))
            list.push_back(readEntry(entry, static_cast<T*>(nullptr)));
}

template <typename T>
Tag writeText(const ListNames& names, const std::vector<T>& list) {
    Tag entries = Tag::element(names.textList);
    for (const T& entry : list)
        entries.addChild(Tag::element(names.entries, entry));
    return entries;
}

} // namespace

CMesh::CMesh(const Tag& tag) {
    if (!tag.hasName(kName))
        return;
    if (const std::string& text = tag.value(); !text.empty() && readBinary(text, *this))
        return;
    readText(tag, kVertices, vertices);
    readText(tag, kTextureCoordinates, textureCoordinates);
    readText(tag, kFaces, faces);
    readText(tag, kTextureFaces, textureFaces);
}

Tag CMesh::write(bool asText) const {
    Tag tag = Tag::element(kName);
    if (asText) {
        tag.addChild(writeText(kVertices, vertices));
        tag.addChild(writeText(kTextureCoordinates, textureCoordinates));
        tag.addChild(writeText(kFaces, faces));
        tag.addChild(writeText(kTextureFaces, textureFaces));
        return tag;
    }
    const std::size_t size = kChunkHeadSize + kName.size() + flatSize(kVertices, vertices) +
                             flatSize(kTextureCoordinates, textureCoordinates) +
                             flatSize(kFaces, faces) + flatSize(kTextureFaces, textureFaces);
    if (size > kMaxFlatSize) {
        Log(Log::Error).write("Mesh not stored, larger than 2 GiB");
        return tag;
    }
    MeshWriter writer(size);
    writer.head(kName, 0, kChildren);
    writer.count(kVertices.count, vertices.size());
    writer.count(kTextureCoordinates.count, textureCoordinates.size());
    writer.count(kFaces.count, faces.size());
    writer.count(kTextureFaces.count, textureFaces.size());
    writer.entries(kVertices.entries, vertices);
    writer.entries(kTextureCoordinates.entries, textureCoordinates);
    writer.entries(kFaces.entries, faces);
    writer.entries(kTextureFaces.entries, textureFaces);
    Tag text = Tag::textNode("");
    text.setName("") = writer.finish(); // Moved: the text is as large as the mesh.
    tag.addChild(std::move(text));
    return tag;
}

} // namespace MVR
