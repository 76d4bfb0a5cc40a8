#include "stage/import/gltf_document.h"

#include "platform/sdk/files.h"
#include "stage/import/imported_node.h"

#include <nlohmann/json.hpp>
#include <tiny_gltf.h>

#include <cstdint>
#include <exception>
#include <limits>
#include <string_view>

namespace Stage {

namespace {

using Json = nlohmann::json;

/// A file in its two parts: the JSON text, and in the binary form what follows it.
struct Parts {
    std::string json;
    std::string rest;
    bool isBinary = false;
};

constexpr std::size_t kHeaderBytes = 12;
constexpr std::size_t kChunkHeaderBytes = 8;
/// Levels of brackets; the parts that are read have 6.
constexpr int kDeepestJson = 64;

std::uint32_t readNumber(std::string_view bytes, std::size_t at) {
    std::uint32_t number = 0;
    for (std::size_t i = 4; i-- > 0;)
        number = number << 8 | static_cast<unsigned char>(bytes[at + i]);
    return number;
}

void writeNumber(std::string& bytes, std::size_t number) {
    for (int i = 0; i < 4; ++i)
        bytes += static_cast<char>(number >> (8 * i) & 0xFF);
}

bool split(const std::string& bytes, Parts& parts, std::string& error) {
    parts.isBinary = bytes.rfind("glTF", 0) == 0;
    if (!parts.isBinary) {
        parts.json = bytes;
        return true;
    }
    constexpr std::size_t kJsonAt = kHeaderBytes + kChunkHeaderBytes;
    if (bytes.size() < kJsonAt || bytes.compare(kHeaderBytes + 4, 4, "JSON") != 0 ||
        readNumber(bytes, kHeaderBytes) > bytes.size() - kJsonAt) {
        error = "the binary file is cut short or doesn't begin with JSON";
        return false;
    }
    const std::size_t length = readNumber(bytes, kHeaderBytes);
    parts.json = bytes.substr(kJsonAt, length);
    parts.rest = bytes.substr(kJsonAt + length);
    return true;
}

std::string join(Parts parts) {
    if (!parts.isBinary)
        return parts.json;
    parts.json.resize((parts.json.size() + 3) / 4 * 4, ' ');
    std::string bytes = "glTF";
    writeNumber(bytes, 2);
    writeNumber(bytes, kHeaderBytes + kChunkHeaderBytes + parts.json.size() + parts.rest.size());
    writeNumber(bytes, parts.json.size());
    return bytes + "JSON" + parts.json + parts.rest;
}

bool isTooDeep(std::string_view json) {
    int depth = 0;
    bool isInText = false;
    for (std::size_t i = 0; i < json.size(); ++i) {
        if (isInText) {
            isInText = json[i] != '"';
            i += json[i] == '\\' ? 1 : 0;
        } else if (json[i] == '"') {
            isInText = true;
        } else if (json[i] == '{' || json[i] == '[') {
            if (++depth > kDeepestJson)
                return true;
        } else if (json[i] == '}' || json[i] == ']') {
            --depth;
        }
    }
    return false;
}

/// Returns only the parts of the JSON that are read, so that nothing else can do harm.
std::string reduce(const std::string& text) {
    const Json whole = Json::parse(text);
    Json part = Json::object();
    for (const char* name :
         {"asset", "scene", "scenes", "nodes", "meshes", "accessors", "bufferViews", "buffers"})
        if (whole.contains(name))
            part[name] = whole[name];
    for (const char* list : {"nodes", "meshes"}) {
        if (part.contains(list) && part[list].is_array()) {
            for (Json& item : part[list]) {
                if (item.is_object()) {
                    item.erase("extensions");
                    item.erase("extras");
                }
            }
        }
    }
    return part.dump();
}

bool isInside(const std::string& path, const std::string& folder) {
    const std::string inner = MVR::Platform::canonicalPath(path);
    const std::string outer = MVR::Platform::canonicalPath(folder.empty() ? "." : folder);
    return !outer.empty() && inner.rfind(outer == "/" ? outer : outer + "/", 0) == 0;
}

bool existsInFolder(const std::string& path, void* folder) {
    return isInside(path, *static_cast<const std::string*>(folder)) &&
           MVR::Platform::fileExists(path);
}

std::string expandNothing(const std::string& path, void* folder) {
    (void)folder;
    return path;
}

bool readInFolder(std::vector<unsigned char>* out, std::string* error, const std::string& path,
                  void* folder) {
    std::string bytes;
    if (!isInside(path, *static_cast<const std::string*>(folder)) ||
        !MVR::Platform::readFile(path, bytes, kMostImportBytes)) {
        *error += MVR::Platform::lastFileError();
        return false;
    }
    out->assign(bytes.begin(), bytes.end());
    return true;
}

} // namespace

bool parseGltf(const std::string& bytes, const std::string& folder, tinygltf::Model& out,
               std::string& error) {
    Parts parts;
    if (!split(bytes, parts, error))
        return false;
    if (isTooDeep(parts.json)) {
        error = "the JSON has more than " + std::to_string(kDeepestJson) + " levels";
        return false;
    }
    tinygltf::TinyGLTF reader;
    std::string base = folder.empty() ? "." : folder;
    reader.SetFsCallbacks({existsInFolder, expandNothing, readInFolder, nullptr, &base});
    std::string warning;
    bool isGood = false;
    try { // both libraries throw on some malformed files
        parts.json = reduce(parts.json);
        const std::string file = join(parts);
        const auto size = static_cast<unsigned>(file.size()); // far below 4 GiB
        isGood = parts.isBinary
                     ? reader.LoadBinaryFromMemory(
                           &out, &error, &warning,
                           reinterpret_cast<const unsigned char*>(file.data()), size, base)
                     : reader.LoadASCIIFromString(&out, &error, &warning, file.data(), size, base);
    } catch (const std::exception& fault) {
        error = fault.what();
        return false;
    }
    error = error.substr(0, error.find('\n'));
    if (!isGood && error.empty())
        error = "it isn't a glTF 2.0 file";
    return isGood;
}

} // namespace Stage
