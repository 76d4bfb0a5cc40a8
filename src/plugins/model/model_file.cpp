#include "plugins/model/model_file.h"

#include "core/base/sdk/log.h"
#include "core/services/fault_list.h"
#include "data/sdk/byte_buffer.h"
#include "data/tag_writer.h"
#include "platform/sdk/files.h"

namespace MVR {
namespace {

constexpr const char* kTooLarge = "its text is too large";

bool refuse(FaultList* faults, const char* what, const std::string& path,
            const std::string& reason) {
    Log(Log::Error).write(what, path + ": " + reason, Log::OwnLevel);
    if (faults != nullptr)
        faults->add({path, "", "", reason, 0});
    return false;
}

} // namespace

std::string folderOfFile(const std::string& path) {
    const std::size_t end = path.find_last_of("/\\");
    const std::string folder = end == std::string::npos ? "" : path.substr(0, end);
    const bool isAbsolute = end != std::string::npos && path.find_first_of("/\\") == 0;
    if (isAbsolute)
        return folder;
    return Platform::currentFolder() + (folder.empty() ? "" : "/" + folder);
}

bool readModelFile(const std::string& path, Tag& out, FaultList* faults) {
    constexpr const char* kUnreadable = "Unable to read model";
    out = Tag();
    std::string bytes;
    if (!Platform::readFile(path, bytes, kMostModelBytes))
        return refuse(faults, kUnreadable, path, Platform::lastFileError());
    const ByteBuffer text = ByteBuffer(bytes.data(), bytes.size()).decompress();
    bytes = std::string();
    if (text.size() > kMostModelTextBytes)
        return refuse(faults, kUnreadable, path, kTooLarge);
    Tag::Place fault;
    const std::int32_t code = out.parse(text.view(), fault);
    if (!out.isEmpty())
        out.attributeRef(kModelFolder) = folderOfFile(path);
    if (code == 0)
        return true;
    return refuse(faults, kUnreadable, path,
                  "line " + std::to_string(fault.line) + ", column " +
                      std::to_string(fault.column) + ": " + Tag::describeFault(code));
}

bool writeModelFile(const std::string& path, const Tag& model, FaultList* faults) {
    constexpr const char* kUnwritable = "Unable to write model";
    std::string text;
    if (!TagWriter("\r\n", "\t").write(model, "", Tag::kMaxDepth, text))
        return refuse(faults, kUnwritable, path, "too many nested elements");
    if (text.size() > kMostModelTextBytes)
        return refuse(faults, kUnwritable, path, kTooLarge);
    const ByteBuffer block = ByteBuffer::compressed(text);
    if (block.size() > kMostModelBytes)
        return refuse(faults, kUnwritable, path, kTooLarge);
    return block.writeFile(path) || refuse(faults, kUnwritable, path, Platform::lastFileError());
}

} // namespace MVR
