#include "unidevice/sdk/profile_managers.h"

#include "core/base/sdk/log.h"
#include "input_test.h"
#include "platform/folder_lock.h"
#include "platform/temporary_folder.h"
#include "support/full_disk.h"
#include "support/scripted_device.h"
#include "support/vtable_slot.h"
#include "unidevice/emulated_trinary_device.h"
#include "unidevice/sdk/property.h"

#include <sys/wait.h>
#include <unistd.h>

namespace {

using namespace MVR;
using testing::HasSubstr;

struct ProfileListTest : testing::Test {
    ~ProfileListTest() override { Util::SingletonCollector::destroyAll(); }

    static std::string names(XMLFileManager& list, const std::string& path) {
        std::string all;
        for (const Tag& preset : list.loadFile(path))
            all += list.elementName(preset) + ",";
        return all;
    }
    static Tag preset(const std::string& name) {
        Tag made = Tag::element("profile");
        made.attributeRef("name") = name;
        return made;
    }
    /// Returns the tree of a file of the folder, as one line.
    std::string tree(const std::string& name) const {
        Tag file;
        EXPECT_EQ(file.load(folder.path + name), 0) << name;
        return file.toText("", "", "");
    }
    static std::string newLog(std::size_t& logged) {
        const std::string text = Log::getText().substr(logged);
        logged += text.size();
        return text;
    }

    TemporaryFolder folder;
    InputProfileManager inputs;
    ConfigProfileManager configs;
};

TEST_F(ProfileListTest, EachListReadsItsOwnRoots) {
    const std::string two =
        "<profile name=\"a\"><x/></profile><note/><!-- n --><profile name='b'/>";
    struct {
        std::string text;
        const char* inputNames;
        const char* configNames;
        bool isLogged;
    } const cases[] = {
        {"<unidevice>" + two + "</unidevice>", "a,b,", "", true},
        {"<?xml version=\"1.0\"?>\n<ConfigProfile>\n\t" + two + "\n</ConfigProfile>", "", "a,b,",
         true},
        {"<CameraConfig>" + two + "</CameraConfig>", "", "a,b,", true},
        {"<profile name=\"alone\"/>", "alone,", "alone,", false},
        {"<profile/>", ",", ",", false},
        {"<unidevice/>", "", "", true},
        {"<other>" + two + "</other>", "", "", true},
        {"<unidevice>" + two, "a,b,", "", true},
        {"<profile name=\"cut\"><property/>", "", "", true},
        {"<unidevice>" + two + "</unidevic>", "a,b,", "", true},
        {std::string("\0\xff<", 3), "", "", true},
        {"", "", "", true},
    };
    std::size_t logged = 0;
    for (const auto& each : cases) {
        const std::string path = folder.add("file.oip", each.text);
        (void)newLog(logged);
        EXPECT_EQ(names(inputs, path), each.inputNames) << each.text;
        EXPECT_EQ(names(configs, path), each.configNames) << each.text;
        EXPECT_EQ(newLog(logged).find("Unable to read profiles: " + path) != std::string::npos,
                  each.isLogged)
            << each.text;
    }
    EXPECT_EQ(names(inputs, folder.add("bad.oip", "<unidevice>\n<profile name=\"a>\"/>")), "");
    EXPECT_THAT(newLog(logged), HasSubstr(", line 2, column "));
    EXPECT_EQ(names(inputs, folder.path + "missing.oip"), "");
    EXPECT_EQ(newLog(logged), "") << "what isn't there needs no word";
    Tag collection = Tag::element("unidevice");
    EXPECT_EQ(inputs.elementName(collection), "");
    collection.addChild(preset("first"));
    EXPECT_EQ(inputs.elementName(collection), "first");
    EXPECT_EQ(configs.elementName(collection), "");
}

TEST_F(ProfileListTest, FilesBeyondTheLimitsAreNotRead) {
    std::string many = "<unidevice>";
    for (std::int32_t i = 0; i <= ProfileManager::kMostProfiles; ++i)
        many += "<profile/>";
    const std::string large = "<unidevice><profile name=\"a\"/></unidevice>" +
                              std::string(ProfileManager::kMostFileBytes, ' ');
    EXPECT_EQ(names(inputs, folder.add("many.oip", many + "</unidevice>")), "");
    EXPECT_EQ(names(inputs, folder.add("large.oip", large)), "");
    EXPECT_THAT(Log::getText(), HasSubstr("many.oip: more than 10000 profiles"));
    EXPECT_THAT(Log::getText(), HasSubstr("large.oip: File too large"));
}

TEST_F(ProfileListTest, APresetGoesToAFileOfItsNameAndNowhereElse) {
    EXPECT_EQ(inputs.saveToFile(preset("Fast"), folder.path + "in"), "") << "no folder";
    const std::string own = folder.path + "in";
    std::filesystem::create_directory(own);
    EXPECT_EQ(inputs.saveToFile(preset("Fast"), own), own + "/Fast.oip");
    EXPECT_EQ(tree("in/Fast.oip"), "<unidevice><profile name=\"Fast\"/></unidevice>");
    EXPECT_EQ(configs.saveToFile(preset("Über \"1\" & 'x' <y"), own),
              own + "/Über \"1\" & 'x' <y.ocp");
    EXPECT_EQ(names(configs, own + "/Über \"1\" & 'x' <y.ocp"), "Über \"1\" & 'x' <y,");
    EXPECT_EQ(
        configs.saveToFile(Tag("<CameraConfig><profile name=\"Whole\"/></CameraConfig>"), own),
        own + "/Whole.ocp");
    EXPECT_EQ(tree("in/Whole.ocp"), "<CameraConfig><profile name=\"Whole\"/></CameraConfig>");

    for (const std::string& name :
         {std::string(), std::string(".."), std::string("../x"), std::string("..\\x"),
          std::string("a/b"), std::string("/x"), std::string("a\nb"), std::string("a\0b", 3),
          std::string("a\x7f"), std::string("a>b"), std::string(300, 'n')}) {
        const bool isDots = name == "..";
        EXPECT_EQ(inputs.saveToFile(preset(name), own).empty(), !isDots) << name;
    }
    std::size_t files = 0;
    for (const auto& file : std::filesystem::recursive_directory_iterator(folder.path))
        files += file.is_regular_file() ? 1 : 0;
    EXPECT_EQ(files, 5u) << "the four and the lock";
    for (const char* reason : {"the name can't be that of a file", "could not be read again",
                               "File name too long", "No such file or directory"})
        EXPECT_THAT(Log::getText(), HasSubstr(reason));
}

TEST_F(ProfileListTest, OtherPresetsOfTheSameFileStay) {
    struct {
        const char* before;
        const char* saved;
        const char* after; // of the file "a.oip"
    } const cases[] = {
        {"<profile name=\"a\"><old/></profile>", "a", "a,"},
        {"<profile name=\"a\"/>", "A", "A,a,"},
        {"<unidevice><profile name=\"x\"/><profile name=\"a\"/><profile name=\"y\"/></unidevice>",
         "a", "a,x,y,"},
        {"<broken><profile name=\"x\"/>", "a", "a,"},
        {"<unidevice><profile name=\"x\"/><profile name=\"a\"/><profi", "a", "a,x,"},
    };
    for (const auto& each : cases) {
        folder.add("a.oip", each.before);
        EXPECT_NE(inputs.saveToFile(preset(each.saved), folder.path), "") << each.before;
        EXPECT_EQ(names(inputs, folder.path + "a.oip"), each.after) << each.before;
    }
    EXPECT_EQ(folder.read("a.oip.bad"), "<broken><profile name=\"x\"/>");
    EXPECT_EQ(folder.read("a.oip.bad2"), std::end(cases)[-1].before);
    folder.add("a.oip", cases[2].before);
    const Tag both("<unidevice><profile name=\"a\"/><profile name=\"y\"/></unidevice>");
    EXPECT_NE(inputs.saveToFile(both, folder.path), "");
    EXPECT_EQ(names(inputs, folder.path + "a.oip"), "a,y,x,") << "each once";
}

TEST_F(ProfileListTest, PresetsAreRemovedOneByOne) {
    struct {
        const char* before;
        const char* removed;
        const char* after; // null: deleted
    } const cases[] = {
        {"<profile name=\"a\"/>", "a", nullptr},
        {"<profile name=\"a\"/>", "A", "<profile name=\"a\"/>"},
        {"<CameraConfig by=\"me\"><profile name=\"a\"/><profile name=\"a\"/><n/><profile "
         "name=\"b\"/>"
         "<profile name=\"a\"/></CameraConfig>",
         "a", "<CameraConfig by=\"me\"><n/><profile name=\"b\"/></CameraConfig>"},
        {"<ConfigProfile><profile name=\"a\"/><profile name=\"b &#62; c\"/></ConfigProfile>", "a",
         "<ConfigProfile><profile name=\"a\"/><profile name=\"b > c\"/></ConfigProfile>"},
        {"<ConfigProfile><profile name=\"a\"/></ConfigProfile>", "b",
         "<ConfigProfile><profile name=\"a\"/></ConfigProfile>"},
        {"<ConfigProfile><profile name=\"a\"/><n/></ConfigProfile>", "a", nullptr},
        {"<unidevice><profile name=\"a\"/></unidevice>", "a",
         "<unidevice><profile name=\"a\"/></unidevice>"},
    };
    for (const auto& each : cases) {
        const std::string path = folder.add("file.ocp", each.before);
        configs.removeFromFile(preset(each.removed), path);
        EXPECT_EQ(std::filesystem::exists(path), each.after != nullptr) << each.before;
        if (each.after == nullptr)
            continue;
        EXPECT_EQ(tree("file.ocp"), each.after);
    }
    configs.removeFromFile(preset("a"), folder.path + "missing.ocp");
    folder.add("torn.ocp", "<ConfigProfile><profile name=\"a\"/><profile name=\"b\"/>");
    configs.removeFromFile(preset("a"), folder.path + "torn.ocp");
    EXPECT_EQ(tree("torn.ocp"), "<ConfigProfile><profile name=\"b\"/></ConfigProfile>");
    EXPECT_EQ(folder.read("torn.ocp.bad"),
              "<ConfigProfile><profile name=\"a\"/><profile name=\"b\"/>");
}

TEST_F(ProfileListTest, AFailedSaveLeavesTheOldFileWhole) {
    inputs.setDestinationPath(folder.path);
    inputs.addSourcePath(folder.path);
    ASSERT_EQ(inputs.addElement(preset("a"), true, false), 0);
    const std::string before = folder.read("a.oip");
    Tag larger = preset("a");
    larger.addChild(Tag::element("property", std::string(1000, 'x')));

    {
        const Testing::FullDisk disk(100);
        EXPECT_EQ(inputs.addElement(larger, true, false), 0);
    }
    EXPECT_EQ(inputs.elementFile("a"), "");
    EXPECT_EQ(inputs.findElement("a")->data, larger) << "it is in the list all the same";
    EXPECT_EQ(folder.read("a.oip"), before);
    EXPECT_THAT(Log::getText(), HasSubstr("Unable to save profile: " + folder.path + "/a.oip: "));
    inputs.reload();
    EXPECT_EQ(inputs.findElement("a")->data, preset("a"));
}

/// Edits the collection in a process of its own: removes the presets of that process, and writes
/// each into a file that it shares with the other process, whose names differ in case.
void editAsProcess(const std::string& folder, int own, int count) {
    InputProfileManager list;
    for (int i = own; i < count; i += 2) {
        Tag preset = Tag::element("profile");
        preset.attributeRef("name") = "p" + std::to_string(i);
        list.removeFromFile(preset, folder + "all.oip");
        preset.attributeRef("name") = (own == 0 ? "q" : "Q") + std::to_string(i / 2);
        if (list.saveToFile(std::move(preset), folder).empty())
            _exit(2);
        usleep(500); // lets the other process in
    }
    _exit(0); // without this program's clean-up
}

TEST_F(ProfileListTest, TwoProcessesEditTheSameFiles) {
    constexpr int kPresets = 60;
    std::string all = "<unidevice><profile name=\"stays\"/>";
    for (int i = 0; i < kPresets; ++i)
        all += "<profile name=\"p" + std::to_string(i) + "\"/>";
    folder.add("all.oip", all + "</unidevice>");
    pid_t others[2];
    for (int own = 0; own < 2; ++own)
        if ((others[own] = fork()) == 0)
            editAsProcess(folder.path, own, kPresets);
    for (int ended = 0; ended < 2;) {
        ASSERT_THAT(names(inputs, folder.path + "all.oip"), HasSubstr("stays,")) << "never torn";
        ended += waitpid(others[ended], nullptr, WNOHANG) == others[ended] ? 1 : 0;
    }
    EXPECT_EQ(names(inputs, folder.path + "all.oip"), "stays,") << "no removal is undone";
    for (int i = 0; i < kPresets / 2; ++i) {
        std::string both;
        for (const char* name : {"q", "Q"})
            both += names(inputs, folder.path + name + std::to_string(i) + ".oip");
        EXPECT_THAT(both, HasSubstr("q" + std::to_string(i) + ","));
        EXPECT_THAT(both, HasSubstr("Q" + std::to_string(i) + ","));
    }
    EXPECT_THAT(Log::getText(), testing::Not(HasSubstr("Unable")));
}

TEST_F(ProfileListTest, AFolderThatSomebodyKeepsIsLeftAlone) {
    folder.add("a.oip", "<profile name=\"a\"/>");
    {
        const Platform::FolderLock other(folder.path);
        ASSERT_TRUE(other.isHeld()) << other.getReason();
        inputs.removeFromFile(preset("a"), folder.path + "a.oip");
        EXPECT_EQ(names(inputs, folder.path + "a.oip"), "a,");
        EXPECT_THAT(Log::getText(), HasSubstr("Unable to remove profile from file: "));
    }
    inputs.removeFromFile(preset("a"), folder.path + "a.oip");
    EXPECT_FALSE(std::filesystem::exists(folder.path + "a.oip"));
}

TEST(ProfileContractTest, OrderOfVirtualOperationsIsFrozen) {
    using List = XMLFileManager;
    Testing::expectSlots("list", 0, &List::saveToFile, &List::loadFile, &List::removeFromFile,
                         &List::elementName, &List::fileFilter);
}

struct StoredProfilesTest : InputTest {};

TEST_F(StoredProfilesTest, EveryVersionLoads) {
    new UniDevice::EmulatedTrinaryDevice;
    auto& keyboard = *new MVR::Testing::ScriptedDevice("Keyboard");
    keyboard.add("Up_Arrow", UniDevice::binary);
    keyboard.add("Down_Arrow", UniDevice::binary);
    auto& pad = *new MVR::Testing::ScriptedDevice("Pad");
    pad.deviceIndex = 1;
    pad.add("X");

    InputProfileManager inputs;
    inputs.addSourcePath(MIRVANE_TEST_FILES "presets_1.oip");
    inputs.reload();
    ASSERT_EQ(inputs.elementCount(), 2);
    EXPECT_EQ(inputs.element(1)->name, "Loose");
    const Tag& profile = inputs.findElement("Two keys")->data;
    for (std::int32_t i = 0; i < 2; ++i) {
        const Tag& stored = profile.child(i);
        UniDevice::Property property(stored.attribute("name"), UniDevice::trinary);
        property.readSettings(stored);
        property.bind(handler.findControl(stored.child("control")));
        ASSERT_NE(property.control, nullptr) << property.name;
        Tag again = parsed(written(property));
        again.addChild(parsed(written(*property.control)));
        EXPECT_EQ(again.toText("", "", ""), stored.toText("", "", "")) << "what is written today";
    }

    ConfigProfileManager configs;
    configs.addSourcePath(MIRVANE_TEST_FILES "presets_1.ocp");
    configs.reload();
    ASSERT_EQ(configs.elementCount(), 2);
    EXPECT_NE(configs.findElement("Start Profile"), nullptr);
}

} // namespace
