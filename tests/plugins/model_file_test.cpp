#include "platform/sdk/files.h"
#include "plugins/model/model_file.h"
#include "plugins/model/model_paths.h"
#include "plugins/tree_test.h"
#include "support/full_disk.h"

#include <filesystem>

namespace {

using namespace MVR;
using testing::HasSubstr;
using Testing::identifierOf;
namespace fs = std::filesystem;

struct ModelFileTest : Testing::TreeTest {
    std::string path(const std::string& name) const { return home.documents() + "/" + name; }
};

TEST_F(ModelFileTest, AModelReachesNoFileButItsOwn) {
    const std::string outside = fs::path(home.install()).parent_path().string() + "/rig";
    for (const char* file : {"rig/m.obj", "rig/sub/n.obj", "rig2/m.obj", "secret.obj",
                             "documents/Oskelworks/Mirvane/own.obj", "install/data/shared.obj"})
        home.write(file, "x");
    const fs::path folder = outside;
    fs::create_symlink("sub/n.obj", folder / "within.obj");
    fs::create_symlink("../secret.obj", folder / "out.obj");
    fs::create_directory_symlink("../rig2", folder / "outer");
    fs::create_symlink(home.documents() + "/own.obj", folder / "own.obj");
    fs::create_directory_symlink("rig", folder.parent_path() / "way");
    const struct {
        std::string name;
        std::string found; // below the home; "" for none
    } cases[] = {
        {"m.obj", "rig/m.obj"},
        {"SUB\\N.obj", "rig/sub/n.obj"},
        {"sub/../m.obj", "rig/m.obj"},
        {"/m.obj", "rig/m.obj"},
        {"within.obj", "rig/sub/n.obj"},
        {"own.obj", "documents/Oskelworks/Mirvane/own.obj"},
        {outside + "/m.obj", "rig/m.obj"},
        {home.documents() + "/own.obj", "documents/Oskelworks/Mirvane/own.obj"},
        {"[SHAREDDATAPATH]\\shared.obj", "install/data/shared.obj"},
        {"../install/data/shared.obj", "install/data/shared.obj"},
        {"../rig2/m.obj", ""},
        {"..\\secret.obj", ""},
        {outside + "/../secret.obj", ""},
        {outside + "2/m.obj", ""},
        {"[SHAREDDATAPATH]\\..\\..\\secret.obj", ""},
        {"out.obj", ""},
        {"outer/m.obj", ""},
        {"/etc/passwd", ""},
        {std::string("m.obj\0.obj", 10), ""},
        {"sub", ""},
        {"none.obj", ""},
        {"", ""},
    };
    const std::string root = Platform::canonicalPath(folder.parent_path().string()) + "/";
    for (const auto& each : cases)
        for (const std::string& model : {outside, folder.parent_path().string() + "\\way\\"}) {
            newLog();
            EXPECT_EQ(findModelFile(model, each.name), each.found.empty() ? "" : root + each.found)
                << each.name;
            EXPECT_EQ(newLog().empty(), !each.found.empty()) << each.name;
        }
    EXPECT_EQ(findModelFile("", "etc/passwd") + findModelFile("/", "etc/passwd"), "");
    EXPECT_EQ(findModelFile("", home.documents() + "/own.obj"),
              Platform::canonicalPath(home.documents() + "/own.obj"));
}

TEST_F(ModelFileTest, AModelIsSavedAndComesBack) {
    place("b", place("a"));
    place("c");
    ASSERT_EQ(getModels(*core)->save("a", path("a.prm")), 0);
    ASSERT_EQ(getModels(*core)->save("", path("all.prm")), 0);
    Tag model;
    ASSERT_TRUE(readModelFile(path("a.prm"), model, nullptr));
    EXPECT_TRUE(model.hasName("MVR_Plugin"));
    EXPECT_EQ(model.attribute("path"), home.documents());
    core->deleteAllInstances();
    adaptor.clearUndo();
    const std::string before = Platform::currentFolder();
    ASSERT_TRUE(Platform::setCurrentFolder(home.documents()));
    EXPECT_EQ(getModels(*core)->load("all.prm", ""), 0);
    ASSERT_TRUE(Platform::setCurrentFolder(before));
    EXPECT_EQ(getModels(*core)->load(path("A.PRM"), ""), 0);
    EXPECT_EQ(tree(), "c a(b) a_01(b_01)");
    EXPECT_EQ(core->getRecentLabel(0) + ";" + core->getRecentLabel(1), "a, c;a");
    EXPECT_EQ(core->getRecentEntry(0).attribute("path"), Platform::canonicalPath(home.documents()));
    while (adaptor.undo()) {
    }
    EXPECT_EQ(tree(), "");
}

TEST_F(ModelFileTest, ABadModelIsRefusedWithThePositionAndAPartlyBadOneIsCreated) {
    const std::string tool = toolData("a").toText("", "", "");
    struct {
        std::string text;
        const char* identifier;
        const char* line;
    } const cases[] = {
        {"", "MODEL_UNREADABLE", "line 1, column 1: no element where one was expected"},
        {"<MVR>\n" + tool + "\n <MVR_Plugin a=1/>\n</MVR>", "MODEL_UNREADABLE",
         "line 3, column 14: a fault in an attribute"},
        {"<MVR>\n" + tool, "MODEL_UNREADABLE", "line 1, column 2: an element isn't closed"},
        {"<html/>", "MODEL_INVALID", "No model in file"},
        {"<MVR><MVR_Plugin><type>None</type></MVR_Plugin></MVR>", "MODEL_NOTHINGCREATED",
         "Could not find plugin type: None"},
        {"<MVR>" + tool + "<MVR_Plugin><type>None</type></MVR_Plugin></MVR>", "MODEL_INCOMPLETE",
         "Tools missing from model"},
    };
    for (const auto& each : cases) {
        home.write("documents/Oskelworks/Mirvane/x.prm", each.text);
        newLog();
        EXPECT_EQ(identifierOf(getModels(*core)->load(path("x.prm"), "")), each.identifier)
            << each.text;
        EXPECT_THAT(newLog(), HasSubstr(each.line));
    }
    EXPECT_EQ(tree(), "a");
    EXPECT_EQ(core->getRecentCount(), 2) << "what was a model at all";
    EXPECT_EQ(identifierOf(getModels(*core)->load(path("none.prm"), "")), "MODEL_UNREADABLE");
    EXPECT_THAT(newLog(), HasSubstr("No such file"));
}

TEST_F(ModelFileTest, AFailedSaveLeavesTheOldFileWhole) {
    place("a");
    ASSERT_EQ(getModels(*core)->save("a", path("a.prm")), 0);
    const std::string old = Testing::readText(path("a.prm"));
    for (int i = 0; i < 200; ++i)
        place("more" + std::to_string(i), find("a"));
    {
        const Testing::FullDisk disk(1000);
        EXPECT_EQ(identifierOf(getModels(*core)->save("a", path("a.prm"))), "MODEL_UNWRITABLE");
    }
    EXPECT_EQ(Testing::readText(path("a.prm")), old);
    EXPECT_TRUE(Platform::listFiles(path(".mvr-*")).empty());
    EXPECT_EQ(identifierOf(getModels(*core)->save("none", path("n.prm"))), "MODEL_NOTOOL");
    EXPECT_EQ(identifierOf(getModels(*core)->save("a", path("no/n.prm"))), "MODEL_UNWRITABLE");

    Tag deep = Tag::element("x");
    for (std::int32_t i = 0; i < Tag::kMaxDepth; ++i) {
        Tag outer = Tag::element("x");
        outer.addChild(std::move(deep));
        deep = std::move(outer);
    }
    EXPECT_TRUE(writeModelFile(path("d.prm"), deep.child(0), nullptr));
    newLog();
    deep.child(0).child(0).addChild(Tag::element("y"));
    Tag deeper = Tag::element("x");
    deeper.addChild(std::move(deep));
    EXPECT_FALSE(writeModelFile(path("d.prm"), deeper, nullptr)) << "nobody could read it";
    EXPECT_THAT(newLog(), HasSubstr("too many nested elements"));
}

} // namespace
