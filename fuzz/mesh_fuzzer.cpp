// Any bytes as the text of an element, or as the chunks in it: the mesh and the matrix that result
// are written and read again alike.

#include "core/base/sdk/log.h"
#include "data/sdk/base64_buffer.h"
#include "plugins/contract/c_mesh.h"
#include "plugins/contract/transform_matrix.h"
#include "require.h"

#include <cstddef>
#include <cstdint>
#include <cstring>

namespace {

using MVR::CMesh;
using MVR::Tag;

void readMesh(const Tag& tag, std::size_t inputSize) {
    const CMesh mesh(tag);
    require(mesh.vertices.size() + mesh.textureCoordinates.size() + mesh.faces.size() +
                mesh.textureFaces.size() <=
            inputSize);
    const Tag binary = mesh.write(false);
    require(CMesh(binary).write(false) == binary);
    const Tag text = mesh.write(true);
    const CMesh again(text);
    require(again.vertices.size() == mesh.vertices.size() && again.faces == mesh.faces);
}

void readTransform(const Tag& tag) {
    const MVR::Matrix matrix = MVR::readMatrix(tag);
    const MVR::Matrix again = MVR::readMatrix(MVR::writeMatrix(matrix));
    require(std::memcmp(&again, &matrix, sizeof matrix) == 0);
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    MVR::Log::setThreshold(MVR::Log::Critical); // else the log of refusals fills the memory
    Tag tag;
    if (size > 0 && data[0] == '<')
        static_cast<void>(tag.parse({reinterpret_cast<const char*>(data), size}));
    else
        tag = Tag::element("CMesh", MVR::Base64Buffer(data, size).toText());
    readMesh(tag, size);
    readTransform(tag);
    return 0;
}
