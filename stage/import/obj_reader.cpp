#include "stage/import/obj_reader.h"

#include <tiny_obj_loader.h>

#include <algorithm>
#include <cmath>
#include <memory>
#include <sstream>
#include <string_view>
#include <unordered_map>

namespace Stage {

namespace {

/// Cutting a face into triangles needs time in the square of its corners.
constexpr std::size_t kMostCornersOfFace = 1000;

/// Returns the number of the first line whose face has too many corners, or 0 if there is none.
std::size_t findHugeFace(std::string_view text) {
    for (std::size_t line = 1; !text.empty(); ++line) {
        const std::size_t length = std::min(text.find_first_of("\r\n"), text.size());
        const std::string_view words = text.substr(0, length);
        const std::size_t first = std::min(words.find_first_not_of(" \t"), words.size());
        if (first < words.size() && words[first] == 'f' &&
            std::count(words.begin(), words.end(), ' ') +
                    std::count(words.begin(), words.end(), '\t') >
                static_cast<std::ptrdiff_t>(kMostCornersOfFace))
            return line;
        text.remove_prefix(length);
        // A line ends with "\n", "\r\n" or "\r".
        if (text.substr(0, 2) == "\r\n")
            text.remove_prefix(1);
        text.remove_prefix(std::min<std::size_t>(1, text.size()));
    }
    return 0;
}

/// The entries of the file's common lists that one mesh uses, each once.
class Corners {
public:
    Corners(const std::vector<tinyobj::real_t>& numbers, std::size_t perEntry,
            std::vector<std::array<double, 3>>& entries, std::vector<std::int32_t>& corners)
        : numbers_(numbers), perEntry_(perEntry), entries_(entries), corners_(corners) {}

    /// Returns false if there is no such entry, or a number of it isn't finite.
    bool add(int index) {
        if (index < 0 || static_cast<std::size_t>(index) >= numbers_.size() / perEntry_)
            return false;
        const auto [known, isNew] =
            places_.emplace(index, static_cast<std::int32_t>(entries_.size()));
        if (isNew) {
            auto& entry = entries_.emplace_back();
            for (std::size_t i = 0; i < perEntry_; ++i) {
                entry[i] = numbers_[static_cast<std::size_t>(index) * perEntry_ + i];
                if (!std::isfinite(entry[i]))
                    return false;
            }
        }
        corners_.push_back(known->second);
        return true;
    }

private:
    const std::vector<tinyobj::real_t>& numbers_;
    std::size_t perEntry_;
    std::vector<std::array<double, 3>>& entries_;
    std::vector<std::int32_t>& corners_;
    std::unordered_map<int, std::int32_t> places_;
};

bool readMesh(const tinyobj::mesh_t& from, const tinyobj::attrib_t& lists, MVR::CMesh& to) {
    Corners places(lists.vertices, 3, to.vertices, to.faces);
    Corners texture(lists.texcoords, 2, to.textureCoordinates, to.textureFaces);
    // Texture coordinates count only if every corner has some.
    const bool hasTexture = std::all_of(
        from.indices.begin(), from.indices.end(),
        [](const tinyobj::index_t& corner) { return corner.texcoord_index >= 0; });
    return std::all_of(from.indices.begin(), from.indices.end(),
                       [&](const tinyobj::index_t& corner) {
                           return places.add(corner.vertex_index) &&
                                  (!hasTexture || texture.add(corner.texcoord_index));
                       });
}

} // namespace

bool readObj(const std::string& text, const std::string& fallbackName,
             std::vector<ImportedNode>& out, std::string& error) {
    if (const std::size_t line = findHugeFace(text); line != 0) {
        error = "line " + std::to_string(line) + ": a face of more than " +
                std::to_string(kMostCornersOfFace) + " corners";
        return false;
    }
    tinyobj::attrib_t lists;
    std::vector<tinyobj::shape_t> shapes;
    std::vector<tinyobj::material_t> materials;
    std::string warning;
    std::istringstream stream(text);
    if (!tinyobj::LoadObj(&lists, &shapes, &materials, &warning, &error, &stream)) {
        error = error.substr(0, error.find('\n'));
        return false;
    }
    if (warning.find("invalid vertex index") != std::string::npos) {
        error = "a face names a vertex that isn't there";
        return false;
    }
    for (const tinyobj::shape_t& shape : shapes) {
        if (shape.mesh.indices.empty())
            continue;
        if (out.size() == kMostImportNodes) {
            error = "more than " + std::to_string(kMostImportNodes) + " objects";
            return false;
        }
        MVR::CMesh mesh;
        if (!readMesh(shape.mesh, lists, mesh)) {
            error = "a face of \"" + shape.name + "\" names a vertex that isn't there";
            return false;
        }
        NodeRecord& record = out.emplace_back().record;
        record.name = shape.name.empty() ? fallbackName : shape.name;
        record.mesh = std::make_shared<const MVR::CMesh>(std::move(mesh));
    }
    return true;
}

} // namespace Stage
