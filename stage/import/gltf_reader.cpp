#include "stage/import/gltf_reader.h"

#include "core/contract/adaptor_interface.h"
#include "stage/import/gltf_document.h"

#include <tiny_gltf.h>

#include <algorithm>
#include <cmath>
#include <cstring>
#include <memory>
#include <utility>

namespace Stage {

namespace {

template <typename Item>
const Item* itemAt(const std::vector<Item>& items, int index) {
    return index >= 0 && static_cast<std::size_t>(index) < items.size()
               ? &items[static_cast<std::size_t>(index)]
               : nullptr;
}

/// The numbers of one accessor, checked against their buffer.
class Numbers {
public:
    /// Returns false, with the reason in `error`, unless all of them are in the file.
    [[nodiscard]] bool open(const tinygltf::Model& model, int accessor, std::string& error);
    [[nodiscard]] std::size_t getCount() const { return count_; }
    [[nodiscard]] int getComponents() const { return components_; }
    [[nodiscard]] bool isInteger() const { return type_ != TINYGLTF_COMPONENT_TYPE_FLOAT; }

    [[nodiscard]] double getNumber(std::size_t item, int component) const {
        const unsigned char* place =
            data_ + item * stride_ + static_cast<std::size_t>(component) * size_;
        const auto unit = [this](double number, double most) {
            return isNormalised_ ? number / most : number;
        };
        switch (type_) {
        case TINYGLTF_COMPONENT_TYPE_UNSIGNED_BYTE:
            return unit(*place, 255);
        case TINYGLTF_COMPONENT_TYPE_UNSIGNED_SHORT:
            return unit(read<std::uint16_t>(place), 65535);
        case TINYGLTF_COMPONENT_TYPE_UNSIGNED_INT:
            return read<std::uint32_t>(place);
        }
        return static_cast<double>(read<float>(place));
    }

private:
    template <typename Number>
    static Number read(const unsigned char* place) {
        Number number; // a file's numbers needn't be aligned
        std::memcpy(&number, place, sizeof number);
        return number;
    }

    const unsigned char* data_ = nullptr; // the model's
    std::size_t count_ = 0;
    std::size_t stride_ = 0;
    std::size_t size_ = 0; // bytes of one component
    int components_ = 0;
    int type_ = 0;
    bool isNormalised_ = false;
};

bool Numbers::open(const tinygltf::Model& model, int index, std::string& error) {
    const std::string name = "accessor " + std::to_string(index);
    const tinygltf::Accessor* accessor = itemAt(model.accessors, index);
    if (accessor == nullptr) {
        error = name + " isn't there";
        return false;
    }
    const tinygltf::BufferView* view = itemAt(model.bufferViews, accessor->bufferView);
    const tinygltf::Buffer* buffer =
        view != nullptr ? itemAt(model.buffers, view->buffer) : nullptr;
    if (buffer == nullptr || accessor->sparse.isSparse) {
        error = name + (accessor->sparse.isSparse ? " is sparse, which isn't supported"
                                                  : " points to no buffer");
        return false;
    }
    type_ = accessor->componentType;
    components_ = tinygltf::GetNumComponentsInType(static_cast<std::uint32_t>(accessor->type));
    const int size = tinygltf::GetComponentSizeInBytes(static_cast<std::uint32_t>(type_));
    const bool isKnown = type_ == TINYGLTF_COMPONENT_TYPE_FLOAT ||
                         type_ == TINYGLTF_COMPONENT_TYPE_UNSIGNED_BYTE ||
                         type_ == TINYGLTF_COMPONENT_TYPE_UNSIGNED_SHORT ||
                         type_ == TINYGLTF_COMPONENT_TYPE_UNSIGNED_INT;
    if (!isKnown || components_ <= 0 || accessor->count == 0) {
        error = name + " has unreadable numbers";
        return false;
    }
    size_ = static_cast<std::size_t>(size);
    const std::size_t item = size_ * static_cast<std::size_t>(components_);
    stride_ = view->byteStride != 0 ? view->byteStride : item;
    count_ = accessor->count;
    isNormalised_ = accessor->normalized;
    const std::size_t all = buffer->data.size();
    // Each is compared with what is left, so that no sum can overflow.
    if (view->byteOffset > all || view->byteLength > all - view->byteOffset ||
        accessor->byteOffset > view->byteLength || stride_ < item || stride_ > 252 + item ||
        item > view->byteLength - accessor->byteOffset ||
        count_ - 1 > (view->byteLength - accessor->byteOffset - item) / stride_) {
        error = name + " reaches outside its buffer";
        return false;
    }
    data_ = buffer->data.data() + view->byteOffset + accessor->byteOffset;
    return true;
}

/// Turns the meshes of a file into ours, each once.
class MeshReader {
public:
    MeshReader(const tinygltf::Model& model, std::string& error) : model_(model), error_(error) {}

    /// Returns false on a fault. The result is null for an index of none.
    [[nodiscard]] bool read(int index, SharedMesh& out);

private:
    bool fail(const std::string& reason) {
        error_ = "mesh \"" + name_ + "\": " + reason;
        return false;
    }
    bool addPrimitive(const tinygltf::Primitive& primitive, MVR::CMesh& mesh);
    bool readCorners(const tinygltf::Primitive& primitive, std::size_t vertices,
                     std::vector<std::int32_t>& out);
    bool addEntries(const Numbers& numbers, std::vector<std::array<double, 3>>& out);

    const tinygltf::Model& model_;
    std::string& error_;
    std::string name_;
    std::size_t entries_ = 0; // of all meshes
    std::vector<SharedMesh> known_;
};

bool MeshReader::addEntries(const Numbers& numbers, std::vector<std::array<double, 3>>& out) {
    entries_ += numbers.getCount();
    if (entries_ > kMostMeshEntries)
        return fail("it is too large");
    for (std::size_t i = 0; i < numbers.getCount(); ++i) {
        auto& entry = out.emplace_back();
        for (int component = 0; component < std::min(numbers.getComponents(), 3); ++component) {
            const double number = numbers.getNumber(i, component);
            if (!std::isfinite(number))
                return fail("it has a number that isn't finite");
            entry[static_cast<std::size_t>(component)] = number;
        }
    }
    return true;
}

/// Lists the vertices that the corners of the triangles name, whatever the form of the list.
bool MeshReader::readCorners(const tinygltf::Primitive& primitive, std::size_t vertices,
                             std::vector<std::int32_t>& out) {
    Numbers indices;
    const bool hasIndices = primitive.indices >= 0;
    std::string reason;
    if (hasIndices && (!indices.open(model_, primitive.indices, reason) || !indices.isInteger()))
        return fail(reason.empty() ? "its indices aren't whole numbers" : reason);
    const std::size_t count = hasIndices ? indices.getCount() : vertices;
    const bool isStrip = primitive.mode == TINYGLTF_MODE_TRIANGLE_STRIP;
    const bool isFan = primitive.mode == TINYGLTF_MODE_TRIANGLE_FAN;
    entries_ += isStrip || isFan ? 3 * count : count;
    if (entries_ > kMostMeshEntries)
        return fail("it is too large");
    const std::size_t step = isStrip || isFan ? 1 : 3;
    for (std::size_t first = 0; first + 2 < count; first += step) {
        // In a strip every other triangle has the opposite order.
        const std::size_t turn = isStrip ? first % 2 : 0;
        const std::size_t places[] = {isFan ? 0 : first + turn, first + 1 - turn, first + 2};
        for (const std::size_t place : places) {
            const auto vertex =
                hasIndices ? static_cast<std::size_t>(indices.getNumber(place, 0)) : place;
            if (vertex >= vertices)
                return fail("a face names a vertex that isn't there");
            out.push_back(static_cast<std::int32_t>(vertex));
        }
    }
    return true;
}

bool MeshReader::addPrimitive(const tinygltf::Primitive& primitive, MVR::CMesh& mesh) {
    const int mode = primitive.mode < 0 ? TINYGLTF_MODE_TRIANGLES : primitive.mode;
    if (mode < TINYGLTF_MODE_TRIANGLES || mode > TINYGLTF_MODE_TRIANGLE_FAN)
        return true; // points and lines
    const auto places = primitive.attributes.find("POSITION");
    Numbers positions;
    std::string reason;
    if (places == primitive.attributes.end() || !positions.open(model_, places->second, reason) ||
        positions.getComponents() != 3)
        return fail(reason.empty() ? "it has no positions" : reason);
    const auto first = static_cast<std::int32_t>(mesh.vertices.size());
    std::vector<std::int32_t> corners;
    if (!addEntries(positions, mesh.vertices) ||
        !readCorners(primitive, positions.getCount(), corners))
        return false;
    for (const std::int32_t corner : corners)
        mesh.faces.push_back(first + corner);
    const auto texture = primitive.attributes.find("TEXCOORD_0");
    if (texture == primitive.attributes.end())
        return true;
    Numbers coordinates;
    if (!coordinates.open(model_, texture->second, reason) ||
        coordinates.getCount() != positions.getCount())
        return fail(reason.empty() ? "its texture coordinates don't fit its positions" : reason);
    const auto firstTexture = static_cast<std::int32_t>(mesh.textureCoordinates.size());
    for (const std::int32_t corner : corners)
        mesh.textureFaces.push_back(firstTexture + corner);
    return addEntries(coordinates, mesh.textureCoordinates);
}

bool MeshReader::read(int index, SharedMesh& out) {
    if (index < 0)
        return true;
    const tinygltf::Mesh* from = itemAt(model_.meshes, index);
    name_ = from != nullptr ? from->name : std::to_string(index);
    if (from == nullptr)
        return fail("it isn't there");
    known_.resize(model_.meshes.size());
    SharedMesh& known = known_[static_cast<std::size_t>(index)];
    if (known == nullptr) {
        auto mesh = std::make_shared<MVR::CMesh>();
        for (const tinygltf::Primitive& primitive : from->primitives)
            if (!addPrimitive(primitive, *mesh))
                return false;
        // A list that only some parts have would belong to the wrong corners.
        if (mesh->textureFaces.size() != mesh->faces.size()) {
            mesh->textureFaces.clear();
            mesh->textureCoordinates.clear();
        }
        known = std::move(mesh);
    }
    out = known->vertices.empty() ? nullptr : known;
    return true;
}

template <std::size_t Size>
bool readNumbers(const std::vector<double>& from, std::array<double, Size>& to) {
    if (from.empty())
        return true; // at rest
    if (from.size() != Size ||
        !std::all_of(from.begin(), from.end(), [](double number) { return std::isfinite(number); }))
        return false;
    std::copy(from.begin(), from.end(), to.begin());
    return true;
}

/// Reads the field of view of a camera, or null for none; an impossible one leaves the lens
/// unchanged.
void readLens(const tinygltf::Camera* from, Lens& to) {
    if (from != nullptr && from->type == "perspective") {
        const double focalLength = toFocalLength(from->perspective.yfov);
        to[kFocalLength] = isLensNumber(focalLength) ? focalLength : to[kFocalLength];
    }
}

bool readTransform(const tinygltf::Node& from, Transform& to) {
    if (from.matrix.empty()) {
        return readNumbers(from.translation, to.position) &&
               readNumbers(from.rotation, to.rotation) && readNumbers(from.scale, to.scale);
    }
    Matrix matrix; // the file's, column after column, is ours, row after row
    if (!readNumbers(from.matrix, matrix))
        return false;
    to = toTransform(matrix);
    return isFinite(to); // the lengths of its rows may overflow
}

/// Returns the nodes with which the walk begins, those of the file's scene.
std::vector<int> rootsOf(const tinygltf::Model& model) {
    const tinygltf::Scene* scene = itemAt(model.scenes, std::max(model.defaultScene, 0));
    if (scene != nullptr)
        return scene->nodes;
    std::vector<bool> isChild(model.nodes.size(), false);
    for (const tinygltf::Node& node : model.nodes) {
        for (const int child : node.children)
            if (itemAt(model.nodes, child) != nullptr)
                isChild[static_cast<std::size_t>(child)] = true;
    }
    std::vector<int> roots;
    for (std::size_t i = 0; i < isChild.size(); ++i)
        if (!isChild[i])
            roots.push_back(static_cast<int>(i));
    return roots;
}

} // namespace

bool readGltf(const std::string& bytes, const std::string& folder, std::vector<ImportedNode>& out,
              std::string& error) {
    tinygltf::Model model;
    if (!parseGltf(bytes, folder, model, error))
        return false;
    if (model.nodes.size() > kMostImportNodes) {
        error = "more than " + std::to_string(kMostImportNodes) + " nodes";
        return false;
    }
    MeshReader meshes(model, error);
    std::vector<bool> isDone(model.nodes.size(), false);
    struct Step {
        int node;
        std::int32_t parent; // index in `out`
    };
    std::vector<Step> waiting; // the next one last
    const auto wait = [&waiting](const std::vector<int>& nodes, std::int32_t parent) {
        for (auto node = nodes.rbegin(); node != nodes.rend(); ++node)
            waiting.push_back({*node, parent});
    };
    wait(rootsOf(model), -1);
    while (!waiting.empty()) {
        const Step step = waiting.back();
        waiting.pop_back();
        const tinygltf::Node* from = itemAt(model.nodes, step.node);
        const std::string name = "node " + std::to_string(step.node);
        if (from == nullptr || isDone[static_cast<std::size_t>(step.node)]) {
            error = name + (from == nullptr ? " isn't there" : " has two parents");
            return false;
        }
        isDone[static_cast<std::size_t>(step.node)] = true;
        ImportedNode& node = out.emplace_back();
        node.parent = step.parent;
        node.record.name = from->name.empty() ? "Node_" + std::to_string(step.node) : from->name;
        node.record.kind = from->camera >= 0 ? MVR::kNodeCamera : MVR::kNodeHelper;
        readLens(itemAt(model.cameras, from->camera), node.record.lens);
        if (!readTransform(*from, node.record.rest)) {
            error = name + ": its transform can't be read";
            return false;
        }
        if (!meshes.read(from->mesh, node.record.mesh))
            return false;
        wait(from->children, static_cast<std::int32_t>(out.size()) - 1);
    }
    return true;
}

} // namespace Stage
