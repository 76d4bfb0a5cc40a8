#include "data/user_file.h"

#include "core/base/sdk/log.h"
#include "platform/sdk/files.h"

namespace MVR {
namespace {

constexpr int kMostCopies = 100; ///< of one file, each of other damage

} // namespace

bool keepDamagedFile(const std::string& path) {
    std::string bytes;
    bool isRead = Platform::readFile(path, bytes);
    if (isRead && bytes.empty())
        return true;
    for (int number = 1; isRead && number <= kMostCopies; ++number) {
        const std::string copy = path + ".bad" + (number == 1 ? "" : std::to_string(number));
        std::string older;
        if (Platform::fileExists(copy)) {
            if (Platform::readFile(copy, older) && older == bytes)
                return true;
        } else if ((isRead = Platform::writeFileAtomic(copy, bytes))) {
            Log(Log::Warning).write("A damaged file is kept as", copy, Log::OwnLevel);
            return true;
        }
    }
    Log(Log::Error)
        .write("Not saved, as a damaged file can't be kept",
               path + ": " + (isRead ? "there are too many copies" : Platform::lastFileError()),
               Log::OwnLevel);
    return false;
}

bool saveUserFile(const Tag& tree, const std::string& path) {
    Tag old;
    const std::int32_t code = old.load(path);
    const bool isWhole = code == 0 && old.hasName(tree.name());
    if (!isWhole && Platform::fileExists(path) && !keepDamagedFile(path))
        return false;
    return tree.save(path);
}

} // namespace MVR
