// The bytes of an input as a file, for readers that open a path.
#pragma once

#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <string>

#include <unistd.h>

/// A file of this process's own, removed with the process.
inline const std::string& inputPath() {
    static const std::string& path = *new std::string(
        (std::filesystem::temp_directory_path() / ("mirvane_fuzz_" + std::to_string(getpid())))
            .string());
    return path;
}

/// A folder beside it, also removed with the process.
inline std::string inputFolder() {
    static const std::string& path = *new std::string(inputPath() + ".folder");
    static const int registered = std::atexit([] { std::filesystem::remove_all(path); });
    if (registered != 0)
        std::abort();
    std::filesystem::create_directory(path);
    return path;
}

inline const std::string& writeInput(const std::uint8_t* bytes, std::size_t size) {
    static const int registered = std::atexit([] { std::remove(inputPath().c_str()); });
    std::FILE* const file = std::fopen(inputPath().c_str(), "wb");
    if (registered != 0 || file == nullptr ||
        (size > 0 && std::fwrite(bytes, 1, size, file) != size) || std::fclose(file) != 0)
        std::abort();
    return inputPath();
}
