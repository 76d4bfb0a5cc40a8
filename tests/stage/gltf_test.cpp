#include "stage/export/gltf_writer.h"

#include "core/contract/adaptor_interface.h"
#include "platform/temporary_folder.h"
#include "stage/export/curve_table.h"
#include "stage/scene/scene.h"
#include "stage/scene/undo_list.h"

#include <gtest/gtest.h>
#include <tiny_gltf.h>

#include <cmath>
#include <cstdlib>
#include <cstring>
#include <filesystem>
#include <memory>
#include <string>
#include <vector>

namespace Stage {
namespace {

/// A scene with everything that could spoil a glTF file.
class GltfTest : public testing::Test {
protected:
    GltfTest() {
        StageNode* rig = scene.create("Rig", nullptr, MVR::kNodeHelper, nullptr);
        StageNode* camera = scene.create("bad \xff \"name\"", nullptr, MVR::kNodeCamera, rig);
        scene.create("Still", nullptr, MVR::kNodeHelper, camera)->setPosition(0, {1, 2, 3});
        scene.setRecording(true);
        for (int i = 0; i <= 50; ++i) {
            const double time = -1 + i * 0.04;
            const double angle = i * 0.1;
            const double sign = i % 2 == 0 ? 3 : -3; // any length, any sign
            camera->setRotation(time, {0, sign * std::sin(angle), 0, sign * std::cos(angle)});
            camera->setPosition(time, {i == 7 ? NAN : i * 0.5, i == 8 ? INFINITY : 0, 1e300});
            camera->setLens(time, kFocalLength, 12 + i); // the half height, at the start
            rig->setPosition(time * 1e-7, {time, 0, 0}); // equal times in single precision
        }
        rig->setRotation(0, {0, 0, 0, 0});
        // One mesh on two nodes, with corners without a vertex and a number that isn't one.
        auto mesh = std::make_shared<MVR::CMesh>();
        mesh->vertices = {{0, 0, 0}, {2, 0, 0}, {0, 3, NAN}, {1e300, 0, 0}};
        mesh->faces = {0, 1, 2, 0, 1, 4, -1, 0, 1, 2, 1, 0, 0, 1};
        rig->setMesh(mesh);
        scene.findByHostName("Still")->setMesh(mesh);
        StageNode* hidden = scene.create("Hidden", nullptr, MVR::kNodeHelper, nullptr);
        hidden->setMesh(mesh);
        hidden->hide();
        for (const auto& node : scene.getNodes())
            nodes.push_back(node.get());
    }

    static tinygltf::Model readBack(const std::string& text) {
        tinygltf::Model model;
        tinygltf::TinyGLTF reader;
        std::string error;
        std::string warning;
        EXPECT_TRUE(reader.LoadASCIIFromString(&model, &error, &warning, text.data(),
                                               static_cast<unsigned>(text.size()), ""))
            << error;
        return model;
    }
    std::vector<float> numbers(const tinygltf::Model& model, int accessor) const {
        const tinygltf::Accessor& found = model.accessors[static_cast<std::size_t>(accessor)];
        const auto& view = model.bufferViews[static_cast<std::size_t>(found.bufferView)];
        std::vector<float> result(view.byteLength / sizeof(float));
        std::memcpy(result.data(), &model.buffers[0].data[view.byteOffset], view.byteLength);
        return result;
    }

    UndoList undo;
    Scene scene{undo};
    std::vector<const StageNode*> nodes;
};

TEST_F(GltfTest, ReadsBackAsItWasMeant) {
    const tinygltf::Model model = readBack(toGltf(nodes, -1));
    ASSERT_EQ(model.nodes.size(), 4U);
    EXPECT_EQ(model.nodes[1].name, "bad ? \"name\"");
    EXPECT_EQ(model.scenes[0].nodes, (std::vector<int>{0, 3}));
    EXPECT_EQ(model.nodes[0].children, std::vector<int>{1});
    EXPECT_EQ(model.nodes[1].children, std::vector<int>{2});
    EXPECT_EQ(model.nodes[1].camera, 0);
    EXPECT_NEAR(model.cameras[0].perspective.yfov, M_PI / 2, 1e-12) << "the lens at the start";
    EXPECT_EQ(model.nodes[2].translation, (std::vector<double>{1, 2, 3}));
    ASSERT_EQ(model.meshes.size(), 1U);
    EXPECT_EQ(model.nodes[0].mesh, 0);
    EXPECT_EQ(model.nodes[2].mesh, 0);
    EXPECT_EQ(model.nodes[3].mesh, -1) << "hidden";
    const tinygltf::Primitive& triangles = model.meshes[0].primitives[0];
    EXPECT_EQ(numbers(model, triangles.attributes.at("POSITION")),
              (std::vector<float>{0, 0, 0, 2, 0, 0, 0, 3, 0, 0, 0, 0}));
    EXPECT_EQ(model.accessors[static_cast<std::size_t>(triangles.indices)].count, 6U);
    ASSERT_EQ(model.animations.size(), 1U);
    ASSERT_EQ(model.animations[0].channels.size(), 4U)
        << "two curves of two nodes, none of the third";

    for (const auto& channel : model.animations[0].channels) {
        const auto& sampler =
            model.animations[0].samplers[static_cast<std::size_t>(channel.sampler)];
        const std::vector<float> times = numbers(model, sampler.input);
        for (std::size_t i = 0; i < times.size(); ++i)
            EXPECT_TRUE(i == 0 ? times[0] >= 0 : times[i] > times[i - 1]) << i;
        const std::vector<float> values = numbers(model, sampler.output);
        for (const float value : values)
            EXPECT_TRUE(std::isfinite(value));
        if (channel.target_path == "rotation") {
            for (std::size_t i = 0; i + 3 < values.size(); i += 4) {
                double length = 0;
                double cosine = 0;
                for (std::size_t j = i; j < i + 4; ++j) {
                    length += values[j] * values[j];
                    cosine += values[j] * values[i == 0 ? j : j - 4];
                }
                EXPECT_NEAR(length, 1, 1e-6);
                EXPECT_GT(cosine, 0) << "a sampler would go the long way";
            }
        }
    }
}

TEST_F(GltfTest, ObjectsAreShownAsCameras) {
    StageNode* tracked = scene.create("Tracked", nullptr, MVR::kNodeHelper, nullptr);
    tracked->setPosition(0, {1, 2, 3});
    nodes.push_back(tracked);
    nodes.push_back(scene.create("Plain", nullptr, MVR::kNodeHelper, nullptr));
    const struct {
        ShownAsCameras cameras;
        std::string shown;
    } cases[] = {{{}, "010000"}, {{true, {}}, "010010"}, {{false, {"Rig", "Plain"}}, "110001"}};
    for (const auto& each : cases) {
        const tinygltf::Model model = readBack(toGltf(nodes, 0, each.cameras));
        std::string shown;
        for (const tinygltf::Node& node : model.nodes)
            shown += node.camera >= 0 ? "1" : "0";
        EXPECT_EQ(shown, each.shown);
    }
}

TEST_F(GltfTest, PassesTheOfficialValidator) {
    if (std::strlen(NODE) == 0)
        GTEST_SKIP() << "node is not installed";
    ASSERT_TRUE(std::filesystem::exists(NODE_MODULES "/gltf-validator"))
        << "./dev setup installs it";
    TemporaryFolder folder;
    const std::string command = "NODE_PATH=" NODE_MODULES " " NODE " " VALIDATE_GLTF " " +
                                folder.add("take.gltf", toGltf(nodes, -1)) + " " +
                                folder.add("cameras.gltf", toGltf(nodes, -1, {true, {"Hidden"}})) +
                                " " + folder.add("empty.gltf", toGltf({nodes[2]}, 0));
    EXPECT_EQ(std::system(command.c_str()), 0);
}

TEST_F(GltfTest, TheTableHoldsEachKeyToTheLastBit) {
    scene.create("odd, \"one\"", nullptr, MVR::kNodeHelper, nullptr)
        ->setPosition(1.0 / 3, {0.1 + 0.2, -0.0, 5e-324});
    EXPECT_EQ(toCurveTable({scene.getNodes().back().get()}),
              "node,time,tx,ty,tz,qx,qy,qz,qw,focallength,focusdistance,fnumber\n"
              "\"odd, \"\"one\"\"\",0.3333333333333333,0.30000000000000004,-0,5e-324,,,,,,,\n");
}

} // namespace
} // namespace Stage
