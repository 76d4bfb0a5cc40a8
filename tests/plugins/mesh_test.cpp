#include "data/sdk/base64_buffer.h"
#include "data/sdk/data_chunk.h"
#include "plugins/contract/c_mesh.h"
#include "plugins/contract/transform_matrix.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cmath>
#include <functional>
#include <limits>
#include <locale>

namespace MVR {
namespace {

using testing::ElementsAre;
using testing::Pointwise;
using Util::DataChunk;
using Vector = std::array<double, 3>;

bool same(const CMesh& a, const CMesh& b) {
    return a.vertices == b.vertices && a.textureCoordinates == b.textureCoordinates &&
           a.faces == b.faces && a.textureFaces == b.textureFaces;
}

CMesh triangle() {
    CMesh mesh;
    mesh.vertices = {{0, 0, 0}, {1.0 / 3, -2e-300, 0}, {0, 1e9 + 1, 12.5}};
    mesh.textureCoordinates = {{0.25, 1, 0}};
    mesh.faces = {0, 1, 2};
    mesh.textureFaces = {0, -1, std::numeric_limits<std::int32_t>::min()};
    return mesh;
}

DataChunk chunkOf(const Tag& tag) {
    const Base64Buffer bytes(tag.value());
    return DataChunk(bytes.data(), bytes.size());
}

std::string payloadOf(const CMesh& mesh, const std::string& name) {
    const DataChunk chunk = chunkOf(mesh.write(false)).child(name);
    return std::string(chunk.data(), chunk.data() + chunk.size());
}

Tag tagOf(DataChunk chunk) {
    std::int32_t size = 0;
    const void* start = chunk.serialize(size);
    return Tag::element("CMesh", Base64Buffer(start, static_cast<std::size_t>(size)).toText());
}

// Builds the chunk of a mesh child by child: `change` sees each before it is added.
Tag rebuilt(const CMesh& mesh, const std::function<bool(DataChunk&)>& change) {
    const DataChunk whole = chunkOf(mesh.write(false));
    DataChunk out("CMesh", nullptr, 0);
    for (const char* name : {"numVertexes", "numTexCoords", "numFaces", "numTFaces", "vertex",
                             "texcoord", "face", "tface"}) {
        DataChunk child = whole.child(name);
        if (change(child))
            out.addChild(child);
    }
    return tagOf(out);
}

TEST(CMeshTest, BinaryFormKeepsEachBit) {
    const CMesh mesh = triangle();
    const Tag tag = mesh.write(false);
    EXPECT_TRUE(same(CMesh(Tag(tag.toText("\r\n", "\t", ""))), mesh));
    // The same as the chunks built one by one, in their order.
    EXPECT_EQ(rebuilt(mesh, [](DataChunk&) { return true; }), tag);
    const DataChunk chunk = chunkOf(tag);
    EXPECT_EQ(chunk.name(), "CMesh");
    EXPECT_EQ(chunk.child("numFaces").data()[0], 3);
    EXPECT_EQ(chunk.child("vertex").size(), 72u);
    // 1/3 in the byte order of files.
    EXPECT_EQ(Base64Buffer(chunk.child("vertex").data() + 24, 8).toText(), "VVVVVVVV1T8=");

    const DataChunk empty = chunkOf(CMesh().write(false));
    for (const char* name : {"vertex", "texcoord", "face", "tface"})
        EXPECT_TRUE(empty.hasChild(name) && empty.child(name).size() == 0) << name;
    EXPECT_TRUE(same(CMesh(CMesh().write(false)), CMesh()));

    CMesh many; // more than is written at once, of each rest
    for (int i = 0; i < 1000; ++i) {
        many.vertices.push_back({i * 0.1, std::sqrt(i), -1.0 * i});
        many.faces.insert(many.faces.end(), i % 3, i);
        EXPECT_TRUE(i <= 120 || i >= 140 || same(CMesh(many.write(false)), many)) << i;
    }
    EXPECT_TRUE(same(CMesh(many.write(false)), many));
}

TEST(CMeshTest, TextFormKeepsSixDigits) {
    CMesh mesh = triangle();
    const Tag tag = mesh.write(true);
    EXPECT_EQ(tag.toText("", "", ""),
              "<CMesh><vertexdata><vertex>0,0,0</vertex><vertex>0.333333,-2e-300,0</vertex>"
              "<vertex>0,1e+09,12.5</vertex></vertexdata><texcoorddata><texcoord>0.25,1,0"
              "</texcoord></texcoorddata><facedata><face>0</face><face>1</face><face>2</face>"
              "</facedata><tfacedata><tface>0</tface><tface>-1</tface><tface>-2147483648</tface>"
              "</tfacedata></CMesh>");
    mesh.vertices[1][0] = 0.333333;
    mesh.vertices[2][1] = 1e9;
    EXPECT_TRUE(same(CMesh(tag), mesh));
}

TEST(CMeshTest, ReadsTextThatWasTypedByHand) {
    const CMesh mesh(Tag("<CMesh><facedata><face>7</face><note>8</note><face>x</face><face/>"
                         "</facedata><vertexdata><vertex>1 2;3</vertex><vertex> +1.5 ,\t-.5e1, 2"
                         "</vertex><vertex>4</vertex><vertex>1,,2</vertex><vertex>a5,6</vertex>"
                         "<vertex>inf,nan,1e999</vertex><vertex/><vertex>8e,-,3</vertex>"
                         "</vertexdata></CMesh>"));
    EXPECT_THAT(mesh.faces, ElementsAre(7, 0, 0));
    EXPECT_THAT(mesh.vertices,
                ElementsAre(Vector{1, 2, 3}, Vector{1.5, -5, 2}, Vector{4, 0, 0}, Vector{1, 0, 2},
                            Vector{0, 5, 6}, Vector{0, 0, 0}, Vector{0, 0, 0}, Vector{0, 0, 3}));
    EXPECT_TRUE(same(CMesh(Tag("<Mesh><facedata><face>7</face></facedata></Mesh>")), CMesh()));
}

TEST(CMeshTest, NumbersDoNotDependOnTheLocale) {
    struct Comma : std::numpunct<char> {
        char do_decimal_point() const override { return ','; }
    };
    const std::locale before = std::locale::global(std::locale(std::locale::classic(), new Comma));
    const CMesh mesh(Tag("<CMesh><vertexdata><vertex>1.5,2.5,3</vertex></vertexdata></CMesh>"));
    EXPECT_THAT(mesh.vertices, ElementsAre(Vector{1.5, 2.5, 3}));
    EXPECT_EQ(mesh.write(true).child(0).child(0).value(), "1.5,2.5,3");
    EXPECT_THAT(readMatrix(Tag("<t><translate>0.5,0,0</translate></t>"))[12], 0.5);
    std::locale::global(before);
}

TEST(CMeshTest, DamagedBinaryFormIsEmptyOrTheTextBesideIt) {
    const CMesh mesh = triangle();
    for (const std::string name : {"numVertexes", "numTexCoords", "numFaces", "numTFaces", "vertex",
                                   "texcoord", "face", "tface"}) {
        const auto changed = [&](const std::function<void(DataChunk&)>& change) {
            return rebuilt(mesh, [&](DataChunk& child) {
                if (child.name() == name)
                    change(child);
                return true;
            });
        };
        const std::string payload = payloadOf(mesh, name);
        const Tag damaged[] = {
            rebuilt(mesh, [&](DataChunk& child) { return child.name() != name; }),
            changed([&](DataChunk& c) { c.setData(payload.data(), payload.size() - 1); }),
            changed([&](DataChunk& c) { c.setData((payload + '\0').data(), payload.size() + 1); }),
            changed([](DataChunk& c) { c.setData("\xFF\xFF\xFF\xFF", 4); }),
            changed([](DataChunk& c) { c.setData("\xFF\xFF\xFF\x7F", 4); }),
            changed([](DataChunk& c) { c.setData(nullptr, 0); }),
        };
        for (std::size_t i = 0; i < std::size(damaged); ++i)
            EXPECT_TRUE(same(CMesh(damaged[i]), CMesh())) << name << ' ' << i;
    }
    const std::string text = mesh.write(false).value();
    for (std::size_t cut = 1; cut < text.size(); ++cut)
        EXPECT_TRUE(same(CMesh(Tag::element("CMesh", text.substr(0, cut))), CMesh())) << cut;
    EXPECT_TRUE(
        same(CMesh(Tag::element("CMesh", text.substr(0, 80) + ' ' + text.substr(81))), CMesh()));

    Tag both = mesh.write(true);
    both.addChild(Tag::textNode("AAAA"));
    EXPECT_EQ(CMesh(both).vertices.size(), 3u);
}

Vector moved(const Vector& point, const Matrix& m) {
    Vector out;
    for (std::size_t j = 0; j < 3; ++j)
        out[j] = point[0] * m[j] + point[1] * m[4 + j] + point[2] * m[8 + j] + m[12 + j];
    return out;
}

Matrix matrixOf(const std::string& xml) {
    return readMatrix(Tag(xml));
}

MATCHER(IsNear, "") {
    return std::abs(std::get<0>(arg) - std::get<1>(arg)) < 1e-12;
}

TEST(TransformMatrixTest, ComponentsActFromTheLastToTheFirst) {
    const std::pair<const char*, Vector> cases[] = {
        {"<t><translate>1,2,3</translate></t>", {2, 2, 3}},
        {"<t><rotate angle=\"90\">0,0,1</rotate></t>", {0, 1, 0}},
        {"<t><rotate angle=\"90\">0,1,0</rotate></t>", {0, 0, -1}},
        {"<t><scale>2,3,4</scale><translate>1,2,3</translate></t>", {4, 6, 12}},
        {"<t><translate>1,2,3</translate><note/><scale>2,3,4</scale></t>", {3, 2, 3}},
        {"<t><rotate>0,0,1</rotate><translate>5</translate></t>", {6, 0, 0}},
        {"<t format=\"component\">1,2<scale>2 2 2</scale></t>", {2, 0, 0}},
        {"<t/>", {1, 0, 0}},
    };
    for (const auto& [xml, expected] : cases)
        EXPECT_THAT(moved({1, 0, 0}, matrixOf(xml)), Pointwise(IsNear(), expected)) << xml;
    const Matrix first = matrixOf("<t><rotate angle=\"30\">1,0,0</rotate></t>");
    const Matrix second = matrixOf("<t><translate>1,2,3</translate></t>");
    EXPECT_THAT(moved({1, 2, 3}, multiply(first, second)),
                Pointwise(IsNear(), moved(moved({1, 2, 3}, first), second)));
}

TEST(TransformMatrixTest, TellsTheFormsApart) {
    Matrix matrix;
    for (std::size_t i = 0; i < matrix.size(); ++i)
        matrix[i] = 1.0 / (i + 3);
    const Tag written = writeMatrix(matrix);
    EXPECT_EQ(written.name(), "transform");
    EXPECT_EQ(readMatrix(written), matrix);
    EXPECT_EQ(matrixOf("<t format=\"binary\">" + written.value() + "</t>"), matrix);
    EXPECT_EQ(matrixOf("<t format=\"other\">" + written.value() + "</t>"), matrix);

    Matrix numbers;
    for (std::size_t i = 0; i < numbers.size(); ++i)
        numbers[i] = static_cast<double>(i) - 4;
    EXPECT_EQ(matrixOf("<t>-4,-3,-2,-1 0 1 2 3;4;5;6;7, 8, 9, 10, 11</t>"), numbers);
    EXPECT_EQ(matrixOf("<t format=\"text\">-4 -3 -2 -1 0 1 2 3 4 5 6 7 8 9 10 11 12</t>"), numbers);

    // Missing parts are the identity's.
    Matrix started = kIdentityMatrix;
    started[0] = 2;
    started[1] = 3;
    EXPECT_EQ(matrixOf("<t>2,3</t>"), started);
    for (const std::string& refused :
         {written.value().substr(4), written.value() + "AAAA", std::string("AAAA"),
          std::string("no base64"), written.value().substr(0, 100) + '!'})
        EXPECT_EQ(matrixOf("<t>" + refused + "</t>"), kIdentityMatrix) << refused;
}

} // namespace
} // namespace MVR
