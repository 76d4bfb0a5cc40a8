#include "platform/posix/library_file.h"

#ifdef __linux__
#include <cstdint>
#include <cstring>
#include <elf.h>
#include <filesystem>
#include <fstream>
#include <link.h>
#include <system_error>
#endif

namespace MVR::Platform {

#ifdef __linux__

namespace {

/// Returns false if less than the whole object is there.
template <typename Object>
bool read(std::ifstream& file, std::uint64_t offset, Object& out) {
    file.seekg(static_cast<std::streamoff>(offset));
    file.read(reinterpret_cast<char*>(&out), sizeof out);
    return static_cast<bool>(file);
}

/// Returns true if all that the headers speak of is in the file.
bool isWhole(std::ifstream& file, const ElfW(Ehdr) & header, std::uint64_t size) {
    const auto isInside = [size](std::uint64_t offset, std::uint64_t length) {
        return offset <= size && length <= size - offset;
    };
    if (!isInside(header.e_shoff, std::uint64_t(header.e_shnum) * header.e_shentsize))
        return false;
    for (std::uint64_t i = 0; i < header.e_phnum; ++i) {
        ElfW(Phdr) segment{};
        if (!read(file, header.e_phoff + i * sizeof segment, segment) ||
            !isInside(segment.p_offset, segment.p_filesz))
            return false;
    }
    return true;
}

} // namespace

std::string faultOfLibraryFile(const std::string& path) {
    std::error_code error;
    if (!std::filesystem::is_regular_file(path, error)) // a pipe would block
        return {};
    std::ifstream file(path, std::ios::binary | std::ios::ate);
    const auto size = static_cast<std::uint64_t>(file.tellg());
    ElfW(Ehdr) header{};
    if (!file || !read(file, 0, header) || std::memcmp(header.e_ident, ELFMAG, SELFMAG) != 0 ||
        header.e_phentsize != sizeof(ElfW(Phdr)))
        return {}; // the loader has its own words for that
    return isWhole(file, header, size) ? "" : path + ": the file is cut short";
}

#else

std::string faultOfLibraryFile(const std::string&) {
    return {};
}

#endif

} // namespace MVR::Platform
