#include "plugins/libraries/library.h"
#include "plugins/libraries/library_manager.h"
#include "plugins/libraries/plugin.h"
#include "support/core_fixture.h"

#include <gmock/gmock.h>

#include <array>
#include <filesystem>
#include <tuple>

namespace {

using namespace MVR;
using testing::ElementsAre;
using Testing::expectInOrder;
using testing::HasSubstr;
using Testing::identifierOf;
namespace fs = std::filesystem;

struct LibraryTest : testing::Test {
    LibraryTest() {
        for (const auto& library : fs::directory_iterator(FAKE_TOOLS_FOLDER))
            fs::copy(library, folder + library.path().filename().string());
        home.write("install/plugins/a_text.so", "not a library");
        home.write("install/plugins/readme.txt", "none of ours");
        libraryLoaded(Platform::ownModule());
    }
    ~LibraryTest() override {
        if (isLoaded)
            libraryUnloading();
    }

    static std::vector<std::string> libraryNames() {
        std::vector<std::string> names;
        for (std::int32_t i = 0; i < manager().getLibraryCount(); ++i)
            names.push_back(manager().getLibrary(i)->getName());
        return names;
    }
    static LibraryManager& manager() { return *LibraryManager::instance(); }

    Testing::TempHome home;
    std::string folder = home.install() + "/plugins/";
    bool isLoaded = true;
};

TEST_F(LibraryTest, BadLibrariesAreSkippedAndTheRestLoads) {
    EXPECT_THAT(libraryNames(), ElementsAre("Core", "fake_empty", "fake_sound"));
    EXPECT_EQ(manager().getLibrary(1)->getPluginCount(), 0);
    for (const char* line :
         {"Could not load library on path: ", "(WARNING): \t\t\t\t\tCreating library",
          "Library creation failed: The specified library could not be loaded",
          "Library creation failed: Could not bind version verification function",
          "Library creation failed: The version of the plugin interface does not match the system "
          "interface",
          "Library creation failed: Could not bind plugin retreiver function"})
        EXPECT_THAT(Log::getText(), HasSubstr(line));

    const fs::path before = fs::current_path();
    const std::string path = home.install() + "/plugins\\";
    struct {
        const char* file;
        const char* result;
    } const cases[] = {{"fake_sound.so", "LIBRARY_ALREADYLOADED"},
                       {"a_text.so", "LIBRARY_COULDNOTLOAD"},
                       {"missing.so", "LIBRARY_COULDNOTLOAD"},
                       {"fake_version251.so", "LIBRARY_COULDNOTLOAD"},
                       {"fake_no_get_plugin.so", "LIBRARY_COULDNOTLOAD"},
                       {"fake_no_version.so", "SUCCESS"},
                       {"./fake_sound.so", "SUCCESS"}};
    for (const auto& each : cases)
        EXPECT_EQ(identifierOf(manager().loadLibrary(path + each.file)), each.result) << each.file;
    EXPECT_EQ(fs::current_path(), before);
    EXPECT_THAT(libraryNames(), ElementsAre("Core", "fake_empty", "fake_sound", "fake_sound"));
}

TEST_F(LibraryTest, PluginsAreFoundByNameAndOldNameInOrder) {
    const Library& sound = *manager().getLibrary(2);
    ASSERT_EQ(sound.getPluginCount(), 2);
    Plugin* const first = sound.getPlugin(0);
    EXPECT_EQ(manager().findPlugin("Fake 0"), first);
    EXPECT_EQ(manager().findPlugin("Older"), first);
    EXPECT_EQ(manager().findPlugin("Fake 1"), first) << "an old name of an earlier one wins";
    EXPECT_EQ(manager().findPlugin("fake 0"), nullptr);
    EXPECT_EQ(sound.getPlugin(2), nullptr);
    EXPECT_EQ(sound.getPlugin(-1), nullptr);

    EXPECT_THAT(first->getCategories(), ElementsAre("Cameras", "Vehicles"));
    EXPECT_THAT(sound.getPlugin(1)->getCategories(), ElementsAre());
    EXPECT_EQ(first->getDescriptor()->getVersionText(), "12.3.45");
    EXPECT_EQ(first->getDefaultData("Mine").toText("", "", ""),
              "<MVR_Plugin version=\"2.5\"><type>Fake 0</type><name>Mine</name></MVR_Plugin>");
    EXPECT_EQ(first->getDefaultData("").childCount(), 1);
    for (const char* made : {"Fake 0/InputProfiles", "Core/EmptyPlugin/ConfigProfiles"})
        EXPECT_TRUE(fs::is_directory(home.documents() + "/data/" + made)) << made;

    std::int32_t error = 0;
    EXPECT_EQ(Plugin::create(nullptr, first->getDescriptor(), error), nullptr);
    EXPECT_EQ(identifierOf(error), "PLUGIN_NOPARENTLIBRARY");
    EXPECT_EQ(Plugin::create(manager().getLibrary(2), nullptr, error), nullptr);
    EXPECT_EQ(identifierOf(error), "PLUGIN_NOHANDLER");
}

struct KeyedKind final : CCameraPlugin {
    explicit KeyedKind(std::string storageKey) : key(std::move(storageKey)) {}
    CCamera* create(CCamera::CreateParam*) override { return nullptr; }
    std::string getName() override { return "Keyed"; }
    std::string getKey() override { return key; }
    std::string getDescription() override { return ""; }
    std::string getCategory() override { return ""; }
    std::string key;
};

std::string namesOf(const XMLFileManager& list) {
    std::string names;
    for (std::int32_t i = 0; i < list.elementCount(); ++i)
        names += list.element(i)->name + ",";
    return names;
}

TEST_F(LibraryTest, PresetsComeFromTheSharedFileThenFromTheUser) {
    const std::string data = "documents/Oskelworks/Mirvane/data/core/prm/";
    for (const auto& [root, file, ending] :
         {std::array{"unidevice", "input", ".oip"}, std::array{"CameraConfig", "config", ".ocp"}}) {
        const std::string kind = file == std::string("input") ? "Input" : "Config";
        home.write(std::string("install/data/core/prm/") + file + "profile.xml",
                   std::string("<") + root + "><profile name=\"Slow\"/><profile name=\"Fast\"/>" +
                       "<profile name=\"FACTORY settings\"/></" + root + ">");
        home.write(data + kind + "Profiles/mine" + ending,
                   "<profile name=\"Slow\"><mine/></profile>");
        home.write(data + kind + "Profiles/other.txt", "<profile name=\"Other\"/>");
    }
    std::int32_t error = 0;
    Plugin* const tool = Plugin::create(manager().getLibrary(0), new KeyedKind("core/prm"), error);
    const std::string own = home.documents() + "/data/core/prm/";
    for (auto [list, folder, ending] : {std::tuple<XMLFileManager*, const char*, const char*>(
                                            &tool->getInputProfiles(), "InputProfiles/", ".oip"),
                                        {&tool->getConfigProfiles(), "ConfigProfiles/", ".ocp"}}) {
        EXPECT_EQ(namesOf(*list), "Slow,Fast,");
        EXPECT_EQ(list->findElement("Slow")->data.childCount("mine"), 1);
        EXPECT_EQ(list->addElement(Tag("<profile name=\"Factory Settings\"/>"), true, false), 1);
        EXPECT_EQ(list->addElement(Tag("<profile name=\"Fast\"/>"), true, false), 0);
        EXPECT_TRUE(fs::exists(own + folder + "Fast" + ending));
        EXPECT_EQ(list->removeElement("Slow"), 0);
        EXPECT_FALSE(fs::exists(own + folder + "mine" + ending));
        list->reload();
        EXPECT_EQ(namesOf(*list), "Slow,Fast,") << "the shared one is back";
        EXPECT_EQ(list->findElement("Slow")->data.childCount("mine"), 0);
        EXPECT_EQ(list->removeElement("factory settings"), 1);
    }
    tool->destroy();

    const auto parts = {"core", "core/prm", "a", "a/b", "a/b/InputProfiles", "a/b/ConfigProfiles"};
    Plugin::create(manager().getLibrary(0), new KeyedKind("a\\b/"), error)->destroy();
    for (const char* made : parts)
        EXPECT_TRUE(fs::is_directory(home.documents() + "/data/" + made)) << made;
}

TEST_F(LibraryTest, WithoutFoldersPresetsAreKeptInTheListOnly) {
    home.forgetRegistry();
    std::int32_t error = 0;
    Plugin* const tool = Plugin::create(manager().getLibrary(0), new KeyedKind("core/prm"), error);
    EXPECT_EQ(tool->getInputProfiles().addElement(Tag("<profile name=\"A\"/>"), true, false), 0);
    EXPECT_EQ(namesOf(tool->getInputProfiles()), "A,");
    EXPECT_EQ(tool->getInputProfiles().elementFile("A"), "");
    tool->destroy();
}

TEST_F(LibraryTest, NamesEndAtTheFirstDotAfterTheFirstCharacter) {
    struct {
        const char* path;
        const char* name;
    } const cases[] = {
        {"/a.b/tool.v2.so", "tool"}, {"C:\\x\\.x.dll", ".x"}, {"tool", "tool"}, {"/a/", ""}};
    for (const auto& each : cases) {
        const auto library = std::make_unique<Library>(each.path);
        EXPECT_EQ(library->getName(), each.name);
    }
}

TEST_F(LibraryTest, UnloadDestroysLibrariesAndPluginsLastFirst) {
    home.write("documents/Oskelworks/Mirvane/data/Core/before", "");
    libraryUnloading();
    isLoaded = false;
    const std::string log = Testing::readText(home.documents() + "/data/Core/core.log");
    expectInOrder(log, {"Shutting down CORE", "Destroying library: fake_sound",
                        "Removing plugins. Plugins in library: 2", "Destroying plugin: Fake 1",
                        "unregistering plugin from library", "library: fake_sound",
                        "plugin: Fake 1", "Destroying CPlugin", "Destroying plugin: Fake 0",
                        "unregistering self from librarymanager", "Destroying library: fake_empty",
                        "Destroying internal library", "Destroying library: Core",
                        "Destroying plugin: Empty Plugin", "Destroying plugin: Root",
                        "Shutdown Complete"});
}

} // namespace
