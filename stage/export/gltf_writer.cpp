#include "stage/export/gltf_writer.h"

#include "core/contract/adaptor_interface.h"
#include "stage/base/text.h"
#include "stage/export/curve_table.h"
#include "stage/scene/stage_node.h"

#include <tiny_gltf.h>

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <cstring>
#include <limits>
#include <map>
#include <sstream>

namespace Stage {

namespace {

constexpr double kNearestUnits = 0.01;
constexpr double kFarthestUnits = 10000;

class GltfBuilder {
public:
    GltfBuilder(double start, const ShownAsCameras& cameras)
        : shift_(std::fmin(start, 0.0)), cameras_(cameras) {
        model_.asset.version = "2.0";
        model_.asset.generator = "Mirvane stage";
        model_.buffers.emplace_back();
        model_.scenes.emplace_back();
        model_.defaultScene = 0;
    }

    void addNodes(const std::vector<const StageNode*>& nodes, double start);
    void addAnimation(const std::vector<const StageNode*>& nodes);
    std::string toText();

private:
    template <typename Number>
    tinygltf::Accessor& addAccessor(const std::vector<Number>& numbers, std::size_t perItem);
    int addNumbers(const std::vector<float>& numbers, int type, std::size_t perItem);
    int addMesh(const SharedMesh& mesh, const std::string& name);
    int addTimes(const std::vector<double>& times);
    void addChannel(tinygltf::Animation& animation, const char* path, int node, int times,
                    int values);
    bool isCamera(const StageNode& node) const;
    int addCamera(const StageNode& node, double start);

    tinygltf::Model model_;
    std::map<const StageNode*, int> indices_;
    std::map<SharedMesh, int> meshes_; // by index in the file; -1 for one without triangles
    double shift_;
    const ShownAsCameras& cameras_;
};

float toFinite(double value, float fallback) {
    const auto number = static_cast<float>(value);
    return std::isfinite(number) ? number : fallback;
}

template <std::size_t Size>
std::vector<double> toNumbers(const std::array<double, Size>& values) {
    std::vector<double> numbers(values.begin(), values.end());
    for (double& number : numbers)
        number = toFinite(number, 0.0F);
    return numbers;
}

void GltfBuilder::addNodes(const std::vector<const StageNode*>& nodes, double start) {
    for (const StageNode* node : nodes) {
        indices_.emplace(node, static_cast<int>(model_.nodes.size()));
        const Transform transform = node->evaluate(start);
        tinygltf::Node& out = model_.nodes.emplace_back();
        out.name = toUtf8(node->getSceneName());
        out.translation = toNumbers(transform.position);
        out.rotation = toNumbers(normalised(transform.rotation));
        out.scale = toNumbers(transform.scale);
        if (isCamera(*node))
            out.camera = addCamera(*node, start);
        if (node->getMesh() != nullptr && node->isShown())
            out.mesh = addMesh(node->getMesh(), out.name);
    }
    for (const StageNode* node : nodes) {
        const auto parent = indices_.find(node->getParentNode());
        auto& siblings = parent != indices_.end()
                             ? model_.nodes[static_cast<std::size_t>(parent->second)].children
                             : model_.scenes[0].nodes;
        siblings.push_back(indices_.at(node));
    }
}

bool GltfBuilder::isCamera(const StageNode& node) const {
    const auto& curves = node.getCurves();
    const bool isMoving = std::any_of(curves.begin(), curves.begin() + kFirstLensCurve,
                                      [](const Curve& curve) { return !curve.isEmpty(); });
    const bool isPlain = node.getKind() == MVR::kNodeHelper && node.getMesh() == nullptr;
    return node.getKind() == MVR::kNodeCamera || (cameras_.isEachMoving && isPlain && isMoving) ||
           std::find(cameras_.names.begin(), cameras_.names.end(), node.getSceneName()) !=
               cameras_.names.end();
}

int GltfBuilder::addCamera(const StageNode& node, double start) {
    tinygltf::Camera& camera = model_.cameras.emplace_back();
    camera.name = toUtf8(node.getSceneName());
    camera.type = "perspective";
    camera.perspective.yfov = toFieldOfView(node.evaluateLens(start)[kFocalLength]);
    camera.perspective.znear = kNearestUnits;
    camera.perspective.zfar = kFarthestUnits;
    return static_cast<int>(model_.cameras.size()) - 1;
}

template <typename Number>
tinygltf::Accessor& GltfBuilder::addAccessor(const std::vector<Number>& numbers,
                                             std::size_t perItem) {
    std::vector<unsigned char>& bytes = model_.buffers[0].data;
    tinygltf::BufferView& view = model_.bufferViews.emplace_back();
    view.buffer = 0;
    view.byteOffset = bytes.size();
    view.byteLength = numbers.size() * sizeof(Number);
    bytes.resize(bytes.size() + view.byteLength);
    std::memcpy(bytes.data() + view.byteOffset, numbers.data(), view.byteLength);

    tinygltf::Accessor& accessor = model_.accessors.emplace_back();
    accessor.bufferView = static_cast<int>(model_.bufferViews.size()) - 1;
    accessor.count = numbers.size() / perItem;
    return accessor;
}

int GltfBuilder::addNumbers(const std::vector<float>& numbers, int type, std::size_t perItem) {
    tinygltf::Accessor& accessor = addAccessor(numbers, perItem);
    accessor.componentType = TINYGLTF_COMPONENT_TYPE_FLOAT;
    accessor.type = type;
    return static_cast<int>(model_.accessors.size()) - 1;
}

/// Returns the corners of the complete triangles whose vertices exist.
std::vector<std::uint32_t> cornersOf(const MVR::CMesh& mesh) {
    std::vector<std::uint32_t> corners;
    corners.reserve(mesh.faces.size());
    const auto isThere = [&mesh](std::int32_t index) {
        return index >= 0 && static_cast<std::size_t>(index) < mesh.vertices.size();
    };
    for (std::size_t i = 0; i + 2 < mesh.faces.size(); i += 3) {
        const auto first = mesh.faces.begin() + static_cast<std::ptrdiff_t>(i);
        if (std::all_of(first, first + 3, isThere))
            corners.insert(corners.end(), first, first + 3);
    }
    return corners;
}

int GltfBuilder::addMesh(const SharedMesh& mesh, const std::string& name) {
    const auto [known, isNew] = meshes_.emplace(mesh, -1);
    const std::vector<std::uint32_t> corners =
        isNew ? cornersOf(*mesh) : std::vector<std::uint32_t>();
    if (corners.empty())
        return known->second;
    std::vector<float> numbers;
    numbers.reserve(mesh->vertices.size() * 3);
    std::vector<double> least(3, std::numeric_limits<double>::max());
    std::vector<double> most(3, std::numeric_limits<double>::lowest());
    for (const auto& vertex : mesh->vertices) {
        for (std::size_t i = 0; i < vertex.size(); ++i) {
            numbers.push_back(toFinite(vertex[i], 0.0F));
            least[i] = std::fmin(least[i], numbers.back());
            most[i] = std::fmax(most[i], numbers.back());
        }
    }
    tinygltf::Primitive primitive;
    primitive.mode = TINYGLTF_MODE_TRIANGLES;
    primitive.attributes["POSITION"] = addNumbers(numbers, TINYGLTF_TYPE_VEC3, 3);
    model_.accessors.back().minValues = least;
    model_.accessors.back().maxValues = most;
    model_.bufferViews.back().target = TINYGLTF_TARGET_ARRAY_BUFFER;
    tinygltf::Accessor& indices = addAccessor(corners, 1);
    indices.componentType = TINYGLTF_COMPONENT_TYPE_UNSIGNED_INT;
    indices.type = TINYGLTF_TYPE_SCALAR;
    model_.bufferViews.back().target = TINYGLTF_TARGET_ELEMENT_ARRAY_BUFFER;
    primitive.indices = static_cast<int>(model_.accessors.size()) - 1;

    tinygltf::Mesh& out = model_.meshes.emplace_back();
    out.name = name;
    out.primitives.push_back(std::move(primitive));
    known->second = static_cast<int>(model_.meshes.size()) - 1;
    return known->second;
}

int GltfBuilder::addTimes(const std::vector<double>& times) {
    std::vector<float> numbers;
    numbers.reserve(times.size());
    for (const double time : times) {
        // The times must rise in single precision too, so equal ones are moved apart.
        auto number = static_cast<float>(std::fmax(time - shift_, 0.0));
        if (!numbers.empty() && number <= numbers.back())
            number = std::nextafter(numbers.back(), std::numeric_limits<float>::max());
        numbers.push_back(number);
    }
    const int index = addNumbers(numbers, TINYGLTF_TYPE_SCALAR, 1);
    tinygltf::Accessor& accessor = model_.accessors.back();
    accessor.minValues = {numbers.front()};
    accessor.maxValues = {numbers.back()};
    return index;
}

void GltfBuilder::addChannel(tinygltf::Animation& animation, const char* path, int node, int times,
                             int values) {
    tinygltf::AnimationSampler& sampler = animation.samplers.emplace_back();
    sampler.input = times;
    sampler.output = values;
    sampler.interpolation = "LINEAR";
    tinygltf::AnimationChannel& channel = animation.channels.emplace_back();
    channel.sampler = static_cast<int>(animation.samplers.size()) - 1;
    channel.target_node = node;
    channel.target_path = path;
}

std::vector<float> positionsAt(const StageNode& node, const std::vector<double>& times) {
    std::vector<float> numbers;
    numbers.reserve(times.size() * 3);
    for (const double time : times) {
        const Vector3 position = node.evaluate(time).position;
        for (const double value : position) {
            const float before = numbers.size() >= 3 ? numbers[numbers.size() - 3] : 0.0F;
            numbers.push_back(toFinite(value, before));
        }
    }
    return numbers;
}

std::vector<float> rotationsAt(const StageNode& node, const std::vector<double>& times) {
    std::vector<float> numbers;
    numbers.reserve(times.size() * 4);
    Quaternion before = kNoRotation;
    for (const double time : times) {
        Quaternion rotation = normalised(node.evaluate(time).rotation);
        double cosine = 0.0;
        for (std::size_t i = 0; i < rotation.size(); ++i)
            cosine += rotation[i] * before[i];
        const double sign = !numbers.empty() && cosine < 0.0 ? -1.0 : 1.0;
        for (double& part : rotation) {
            part *= sign;
            numbers.push_back(static_cast<float>(part));
        }
        before = rotation;
    }
    return numbers;
}

void GltfBuilder::addAnimation(const std::vector<const StageNode*>& nodes) {
    tinygltf::Animation animation;
    animation.name = "Take";
    for (const StageNode* node : nodes) {
        const int index = indices_.at(node);
        const auto positionTimes = keyTimes(node->getCurves(), 0, kFirstRotationCurve);
        const auto rotationTimes =
            keyTimes(node->getCurves(), kFirstRotationCurve, kFirstLensCurve);
        int input = -1;
        if (!positionTimes.empty()) {
            input = addTimes(positionTimes);
            addChannel(animation, "translation", index, input,
                       addNumbers(positionsAt(*node, positionTimes), TINYGLTF_TYPE_VEC3, 3));
        }
        if (!rotationTimes.empty()) {
            if (rotationTimes != positionTimes)
                input = addTimes(rotationTimes);
            addChannel(animation, "rotation", index, input,
                       addNumbers(rotationsAt(*node, rotationTimes), TINYGLTF_TYPE_VEC4, 4));
        }
    }
    if (!animation.channels.empty())
        model_.animations.push_back(std::move(animation));
}

std::string GltfBuilder::toText() {
    // The format allows no empty lists.
    if (model_.buffers[0].data.empty())
        model_.buffers.clear();
    std::ostringstream out;
    tinygltf::TinyGLTF writer;
    writer.WriteGltfSceneToStream(&model_, out, true, false);
    return out.str();
}

} // namespace

std::string toGltf(const std::vector<const StageNode*>& nodes, double start,
                   const ShownAsCameras& cameras) {
    GltfBuilder builder(start, cameras);
    builder.addNodes(nodes, start);
    builder.addAnimation(nodes);
    return builder.toText();
}

} // namespace Stage
