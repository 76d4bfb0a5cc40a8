#include "platform/registry.h"

#include "platform/libraries.h"
#include "platform/sdk/files.h"
#include "temporary_folder.h"

#include <filesystem>
#include <gtest/gtest.h>
#include <map>
#include <optional>

using namespace MVR::Platform;

namespace {

const std::string kShell = "Software\\Microsoft\\Windows\\CurrentVersion\\Explorer\\Shell Folders";
const std::string kInstall = "SOFTWARE\\Oskelworks\\Lensetta";

class Registry : public testing::Test {
protected:
    void SetUp() override {
        for (const char* name :
             {"MIRVANE_REGISTRY", "XDG_CONFIG_HOME", "XDG_CONFIG_DIRS", "HOME"}) {
            const char* value = std::getenv(name);
            before_[name] = value ? std::optional<std::string>(value) : std::nullopt;
            unsetenv(name);
        }
        set("HOME", folder_.path + "home");
        set("XDG_CONFIG_DIRS", "relative:" + folder_.path + "none:" + folder_.path + "etc");
    }
    void TearDown() override {
        for (const auto& [name, value] : before_)
            value ? set(name, *value) : void(unsetenv(name.c_str()));
    }
    static void set(const std::string& name, const std::string& value) {
        setenv(name.c_str(), value.c_str(), 1);
    }
    /// Returns the value, or what is missing, "key" or "value", in brackets.
    static std::string read(Hive hive, const std::string& key, const std::string& name) {
        std::string out = "kept";
        switch (readRegistryValue(hive, key, name, out)) {
        case RegistryResult::Found:
            return out;
        case RegistryResult::KeyMissing:
            return out == "kept" ? "<key>" : "changed";
        case RegistryResult::ValueMissing:
            return out == "kept" ? "<value>" : "changed";
        case RegistryResult::FileUnreadable:
            return out == "kept" ? "<" + lastFileError() + ">" : "changed";
        }
        return "";
    }
    static std::string user(const std::string& name) {
        return read(Hive::CurrentUser, kShell, name);
    }
    static std::string machine(const std::string& name) {
        return read(Hive::LocalMachine, kInstall, name);
    }

    TemporaryFolder folder_;

private:
    std::map<std::string, std::optional<std::string>> before_;
};

TEST_F(Registry, TheNamedFileServesBothHivesAlone) {
    const std::string longest(kRegistryBufferBytes - 1, 'x');
    const std::string install = "stray=1\n# comment=1\n[" + kInstall +
                                "]\r\n  path = /opt/a = b \r\nPATH=second\nno value here\n"
                                "[broken\ndatapath=/lost\n";
    const std::string again = "[software\\oskelworks\\LENSETTA]\npluginpath=\nlongest=" + longest +
                              "\ntoolong=" + longest + "x\n";
    const std::string shell = "[" + kShell + "]\nPersonal=/home/me";
    set("MIRVANE_REGISTRY", folder_.add("Registry.ini", install + again + shell));
    EXPECT_EQ(machine("path"), "/opt/a = b");
    EXPECT_EQ(machine("datapath"), "<value>");
    EXPECT_EQ(machine("PluginPath"), "");
    EXPECT_EQ(machine("longest"), longest);
    EXPECT_EQ(machine("toolong"), "<value>");
    EXPECT_EQ(user("Personal"), "/home/me");
    EXPECT_EQ(user("Desktop"), "<value>");
    EXPECT_EQ(read(Hive::LocalMachine, "stray", "stray"), "<key>");

    set("MIRVANE_REGISTRY", folder_.path + "missing.ini");
    EXPECT_EQ(machine("path"), "<No such file or directory>");
    EXPECT_EQ(user("Personal"), "<No such file or directory>");
    const std::string large = folder_.add("large.ini", "[" + kInstall + "]\npath=/opt\n");
    set("MIRVANE_REGISTRY", large);
    for (const auto& [bytes, path] :
         {std::pair(1 << 20, "/opt"), {(1 << 20) + 1, "<File too large>"}}) {
        std::filesystem::resize_file(large, bytes);
        EXPECT_EQ(machine("path"), path);
    }
}

TEST_F(Registry, FilesOfTheConfigFoldersCountBeforeTheMachinesOwnFolders) {
    folder_.add("etc/mirvane/registry.ini", "[" + kInstall + "]\npath=/opt/mirvane\n");
    folder_.add("home/.config/mirvane/registry.ini", "[" + kShell + "]\nPersonal=/first\n");
    folder_.add("xdg/mirvane/registry.ini", "[" + kShell + "]\nPersonal=/second\n");
    EXPECT_EQ(machine("path"), "/opt/mirvane");
    EXPECT_EQ(machine("datapath"), "<value>");
    EXPECT_EQ(user("Personal"), "/first");
    set("XDG_CONFIG_HOME", folder_.path + "xdg");
    EXPECT_EQ(user("Personal"), "/second");
    EXPECT_EQ(user("Desktop"), folder_.path + "home");
    EXPECT_EQ(user("path"), "<value>");
    EXPECT_EQ(read(Hive::CurrentUser, kInstall, "path"), "<key>");
}

TEST_F(Registry, UserFoldersComeFromTheListThenFromTheHomeFolder) {
    const std::string home = folder_.path + "home";
    EXPECT_EQ(user("Personal"), home);
    std::filesystem::create_directories(home + "/Documents");
    EXPECT_EQ(user("personal"), home + "/Documents");
    folder_.add("home/.config/user-dirs.dirs", "# XDG_DESKTOP_DIR=\"/wrong\"\n"
                                               "XDG_DOCUMENTS_DIR=\"$HOME/Dokumente\"\n"
                                               "XDG_DESKTOP_DIR=\"/mnt/desk top\"\n");
    EXPECT_EQ(user("Personal"), home + "/Dokumente");
    EXPECT_EQ(user("Desktop"), "/mnt/desk top");
    unsetenv("HOME");
    EXPECT_EQ(user("Personal"), "<key>");
}

TEST_F(Registry, WithNoFileAnUnpackedArchiveFindsItsFoldersBesideTheLibrary) {
    std::filesystem::copy_file(PLATFORM_SAMPLE_LIBRARY, folder_.path + "sample.so");
    const LibraryHandle library = loadLibrary(folder_.path + "sample.so");
    ASSERT_NE(library, nullptr);
    const auto ask = reinterpret_cast<int (*)(const char*, std::string*)>(
        findFunction(library, "askInstallValue"));
    const std::string base = std::filesystem::canonical(folder_.path);
    const std::map<std::string, std::string> expected = {{"path", base},
                                                         {"datapath", base + "/data"},
                                                         {"pluginpath", base + "/plugins"},
                                                         {"docpath", base + "/doc"}};
    for (const auto& [name, value] : expected) {
        std::string found;
        EXPECT_EQ(ask(name.c_str(), &found), int(RegistryResult::Found));
        EXPECT_EQ(found, value);
    }
    std::string none;
    EXPECT_EQ(ask("other", &none), int(RegistryResult::ValueMissing));
    freeLibrary(library);
}

} // namespace
