#include "support/temp_home.h"

#include <gtest/gtest.h>

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <sstream>

namespace MVR::Testing {

namespace fs = std::filesystem;

TempHome::TempHome() {
    std::string name = testing::TempDir() + "mirvane_home_XXXXXX";
    if (mkdtemp(name.data()) == nullptr)
        ADD_FAILURE() << "no temporary folder " << name;
    root_ = name;
    fs::create_directories(documents() + "/data");
    fs::create_directories(install() + "/data/unidevice");
    fs::create_directories(install() + "/plugins");
    write("registry.ini", R"([Software\Microsoft\Windows\CurrentVersion\Explorer\Shell Folders])"
                          "\nPersonal=" +
                              root_ +
                              "/documents\n"
                              R"([SOFTWARE\Oskelworks\Lensetta])"
                              "\npath=" +
                              install() + "\ndatapath=" + install() + "/data\npluginpath=" +
                              install() + "/plugins\ndocpath=" + install() + "/doc\n");
    setenv("MIRVANE_REGISTRY", (root_ + "/registry.ini").c_str(), 1);
}

TempHome::~TempHome() {
    unsetenv("MIRVANE_REGISTRY");
    fs::remove_all(root_);
}

void TempHome::forgetRegistry() const {
    write("registry.ini", "");
}

void TempHome::write(const std::string& path, const std::string& text) const {
    const fs::path file = fs::path(root_) / path;
    fs::create_directories(file.parent_path());
    std::ofstream(file, std::ios::binary) << text;
}

std::string readText(const std::string& path) {
    std::ifstream file(path, std::ios::binary);
    EXPECT_TRUE(file.is_open()) << path;
    std::ostringstream text;
    text << file.rdbuf();
    return text.str();
}

} // namespace MVR::Testing
