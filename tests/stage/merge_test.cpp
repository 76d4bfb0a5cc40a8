#include "stage/import/merge.h"

#include "core/contract/adaptor_interface.h"
#include "platform/temporary_folder.h"
#include "stage/export/gltf_writer.h"
#include "stage/import/gltf_reader.h"
#include "stage/scene/scene.h"
#include "stage/scene/undo_list.h"

#include <gtest/gtest.h>
#include <tiny_gltf.h>

#include <filesystem>
#include <string>
#include <vector>

namespace Stage {
namespace {

/// Two triangles of a square, of 4 vertices, 6 indices as bytes.
constexpr const char* kSquareBytes =
    "AAAAAAAAAAAAAAAAAACAPwAAAAAAAAAAAACAPwAAgD8AAAAAAAAAAAAAgD8AAAAAAAECAAID";

class MergeTest : public testing::Test {
protected:
    /// A glTF file around these nodes; the buffer of 54 bytes is a square's.
    static std::string gltf(const std::string& nodes, const std::string& uri,
                            const std::string& indices = R"("count":6)") {
        return R"({"asset":{"version":"2.0"},"scene":0,"scenes":[{"nodes":[0]}],"nodes":)" + nodes +
               R"(,"meshes":[{"name":"Square","primitives":[{"attributes":{"POSITION":0},)"
               R"("indices":1}]}],"accessors":[{"bufferView":0,"componentType":5126,"count":4,)"
               R"("type":"VEC3"},{"bufferView":1,"componentType":5121,"type":"SCALAR",)" +
               indices +
               R"(}],"bufferViews":[{"buffer":0,"byteLength":48},{"buffer":0,"byteOffset":48,)"
               R"("byteLength":6}],"buffers":[{"byteLength":54,"uri":")" +
               uri + R"("}],"images":[{"bufferView":99}],"extras":[[[1]]]})";
    }
    static std::string dataUri() {
        return std::string("data:application/octet-stream;base64,") + kSquareBytes;
    }
    std::vector<StageNode*> merge(const std::string& path) {
        error.clear();
        return mergeInto(scene, path, error);
    }

    const std::string kRig =
        R"([{"name":"Rig","children":[1,2],"matrix":[0,1,0,0,-1,0,0,0,0,0,1,0,5,6,7,1]},)"
        R"({"name":"Body","mesh":0,"translation":[1,2,3],"scale":[2,2,2]},)"
        R"({"mesh":0,"camera":0}])";
    TemporaryFolder folder;
    std::string error;
    UndoList undo;
    Scene scene{undo};
};

TEST_F(MergeTest, AGltfFileComesInWithHierarchyTransformsAndMeshes) {
    scene.create("Body", nullptr, MVR::kNodeHelper, nullptr);
    for (const std::string& path : {folder.add("car.gltf", gltf(kRig, dataUri())),
                                    folder.add("near.GLTF", gltf(kRig, "square.bin"))}) {
        const char square[] = "\0\0\0\0\0\0\0\0\0\0\0\0\0\0\x80?\0\0\0\0\0\0\0\0\0\0\x80?\0\0\x80?"
                              "\0\0\0\0\0\0\0\0\0\0\x80?\0\0\0\0\0\1\2\0\2\3";
        folder.add("square.bin", std::string(square, 54));
        const auto nodes = merge(path);
        ASSERT_EQ(nodes.size(), 3U) << error;
        EXPECT_EQ(nodes[0]->getSceneName(), "Rig");
        EXPECT_EQ(nodes[1]->getName(), "Body") << "as the file has it";
        EXPECT_EQ(nodes[1]->getSceneName(), "Body_02") << "unique in the scene";
        EXPECT_EQ(nodes[2]->getKind(), MVR::kNodeCamera);
        EXPECT_EQ(nodes[0]->getChildren(), (std::vector<StageNode*>{nodes[1], nodes[2]}));
        const Matrix global = nodes[1]->evaluateGlobal(0);
        const Vector3 place = {global[12], global[13], global[14]};
        EXPECT_NEAR(place[0], 5 - 2, 1e-12) << "the rig is a quarter turn about z";
        EXPECT_NEAR(place[1], 6 + 1, 1e-12);
        EXPECT_NEAR(global[1], 2, 1e-12);
        ASSERT_NE(nodes[1]->getMesh(), nullptr);
        EXPECT_EQ(nodes[1]->getMesh(), nodes[2]->getMesh()) << "shared";
        EXPECT_EQ(nodes[1]->getMesh()->vertices[2], (std::array<double, 3>{1, 1, 0}));
        EXPECT_EQ(nodes[1]->getMesh()->faces, (std::vector<std::int32_t>{0, 1, 2, 0, 2, 3}));

        EXPECT_EQ(undo.getUndoName(), "Merge " + std::filesystem::path(path).filename().string());
        ASSERT_TRUE(undo.undo());
        EXPECT_EQ(scene.getNodes().size(), 1U);
        ASSERT_TRUE(undo.redo());
        EXPECT_EQ(nodes[1]->getParentNode(), nodes[0]);
        ASSERT_TRUE(undo.undo());
    }
    // The stage reads what it writes, also in the binary form.
    const auto nodes = merge(folder.path + "car.gltf");
    tinygltf::Model model;
    tinygltf::TinyGLTF library;
    std::string text = toGltf({nodes.begin(), nodes.end()}, 0);
    ASSERT_TRUE(library.LoadASCIIFromString(&model, &error, &error, text.data(),
                                            static_cast<unsigned>(text.size()), ""));
    ASSERT_TRUE(
        library.WriteGltfSceneToFile(&model, folder.path + "car.glb", true, true, true, true));
    const auto again = merge(folder.path + "car.glb");
    ASSERT_EQ(again.size(), 3U) << error;
    EXPECT_EQ(again[1]->getMesh()->faces, nodes[1]->getMesh()->faces);
    EXPECT_EQ(again[1]->getRest(), nodes[1]->getRest());
}

TEST_F(MergeTest, AnObjFileComesInAsTriangles) {
    const auto nodes =
        merge(folder.add("shed.obj", "mtllib ../../etc/passwd\nv 0 0 0\nv 1 0 0\nv 1 1 0\n"
                                     "v 0 1 0\nvt 0 0\nvt 1 0\nvt 1 1\nf 1 2 3 4\n"
                                     "o Roof\nv 0 0.1 5\nf 5/1 -4/2 2/3\no Empty\n"));
    ASSERT_EQ(nodes.size(), 2U) << error;
    EXPECT_EQ(nodes[0]->getSceneName(), "shed") << "a part without a name gets the file's";
    EXPECT_EQ(nodes[0]->getMesh()->faces.size(), 6U);
    EXPECT_TRUE(nodes[0]->getMesh()->textureFaces.empty());
    EXPECT_EQ(nodes[1]->getSceneName(), "Roof");
    // It uses three of five vertices, and one of them twice: from the end, and as 2.
    EXPECT_EQ(nodes[1]->getMesh()->vertices,
              (std::vector<std::array<double, 3>>{{0, 0.1, 5}, {1, 0, 0}}));
    EXPECT_EQ(nodes[1]->getMesh()->faces, (std::vector<std::int32_t>{0, 1, 1}));
    EXPECT_EQ(nodes[1]->getMesh()->textureFaces, (std::vector<std::int32_t>{0, 1, 2}));
}

TEST_F(MergeTest, ABadFileYieldsNothingAndSaysWhy) {
    folder.add("outside.bin", std::string(54, '\0'));
    std::filesystem::create_directory(folder.path + "inside");
    std::filesystem::create_symlink(folder.path + "outside.bin", folder.path + "inside/link.bin");
    std::string deep(100'000, '[');
    const struct {
        const char* name;
        std::string bytes;
        const char* reason;
    } cases[] = {
        {"inside/a.max", "", "only .gltf, .glb and .obj"},
        {"inside/a.gltf", "{", "parse error at line 1, column 2"},
        {"inside/a.gltf", "{\"asset\":[]}", "asset"},
        {"inside/a.gltf", R"({"asset":)" + deep, "levels"},
        {"inside/a.gltf", gltf(kRig, "../outside.bin"), "outside.bin"},
        {"inside/a.gltf", gltf(kRig, "link.bin"), "link.bin"},
        {"inside/a.gltf", gltf(kRig, "/etc/hostname"), "hostname"},
        {"inside/a.gltf", gltf(R"([{"children":[1]},{"children":[0]}])", dataUri()), "two parents"},
        {"inside/a.gltf", gltf(R"([{"children":[7]}])", dataUri()), "node 7 isn't there"},
        {"inside/a.gltf", gltf(R"([{"mesh":3}])", dataUri()), "mesh \"3\": it isn't there"},
        {"inside/a.gltf", gltf(R"([{"mesh":0}])", dataUri(), R"("count":7)"), "outside its buffer"},
        {"inside/a.gltf", gltf(R"([{"mesh":0}])", dataUri(), R"("count":18446744073709551615)"),
         "outside its buffer"},
        {"inside/a.gltf", gltf(R"([{"mesh":0}])", dataUri(), R"("count":3,"byteOffset":3)"),
         nullptr},
        {"inside/a.gltf",
         gltf(R"([{"mesh":0}])", dataUri(), R"("byteOffset":4294967295,"count":3)"),
         "outside its buffer"},
        {"inside/a.glb", std::string("glTF\2\0\0\0\xff\xff\xff\x7f\xff\xff\xff\x7fJSON", 20),
         "cut"},
        {"inside/a.obj", "v 0 0 0\nf 1 2 3\n", "isn't there"},
        {"inside/a.obj", "v 0 0 0\nf 1 1 1 9999999\n", "isn't there"},
        {"inside/a.obj", "v 0 0 0\nv 1 0 0\nv 0 1e999 0\nf 1 2 0\n", "line"},
        {"inside/a.obj", "\xff\xfe no file", "no nodes"},
    };
    for (const auto& bad : cases) {
        const auto nodes = merge(folder.add(bad.name, bad.bytes));
        if (bad.reason == nullptr) {
            EXPECT_EQ(nodes.size(), 1U) << error;
            EXPECT_TRUE(undo.undo());
            continue;
        }
        EXPECT_TRUE(nodes.empty()) << bad.bytes;
        EXPECT_NE(error.find(bad.reason), std::string::npos) << bad.bytes << "\n" << error;
        EXPECT_EQ(error.find(folder.path), 0U) << "names the file: " << error;
    }
}

TEST_F(MergeTest, AHostileFileDoesNoHarm) {
    EXPECT_TRUE(merge(folder.path + "none.obj").empty());
    std::string face = "v 0 0 0\n\r\nf";
    for (int i = 0; i < 2000; ++i)
        face += " 1";
    EXPECT_TRUE(merge(folder.add("huge.obj", face)).empty());
    EXPECT_NE(error.find("line 3"), std::string::npos) << error;

    // A file that is cut at any byte, or has a changed byte, is refused or read, and does no harm.
    const std::string good = gltf(kRig, dataUri());
    for (std::size_t i = 0; i < good.size(); ++i) {
        std::vector<ImportedNode> nodes;
        EXPECT_FALSE(readGltf(good.substr(0, i), folder.path, nodes, error)) << i;
        std::string changed = good;
        changed[i] = changed[i] == '9' ? '-' : '9';
        (void)readGltf(changed, folder.path, nodes, error);
    }
}

} // namespace
} // namespace Stage
