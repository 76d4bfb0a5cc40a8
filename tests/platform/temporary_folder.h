#pragma once

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <string>

/// An empty folder, removed with its object. Its path ends with "/".
class TemporaryFolder {
public:
    TemporaryFolder() {
        std::string name = (std::filesystem::temp_directory_path() / "mirvane-XXXXXX").string();
        path = std::string(mkdtemp(name.data())) + "/";
    }
    ~TemporaryFolder() { std::filesystem::remove_all(path); }

    /// Writes a file below the folder, with the folders that it needs.
    std::string add(const std::string& name, const std::string& bytes = "") const {
        std::filesystem::create_directories(std::filesystem::path(path + name).parent_path());
        std::ofstream(path + name, std::ios::binary) << bytes;
        return path + name;
    }
    std::string read(const std::string& name) const {
        std::ifstream file(path + name, std::ios::binary);
        return {std::istreambuf_iterator<char>(file), {}};
    }

    std::string path;
};
