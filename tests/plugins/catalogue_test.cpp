#include "data/sdk/byte_buffer.h"
#include "platform/sdk/files.h"
#include "plugins/instanciatable.h"
#include "plugins/libraries/library_manager.h"
#include "plugins/tree_test.h"
#include "support/scripted_tool.h"

#include <filesystem>
#include <sys/stat.h>

namespace {

using namespace MVR;
using testing::ElementsAre;
using testing::HasSubstr;
namespace fs = std::filesystem;

const std::string kShared = "install/PRM/";
const std::string kOwn = "documents/Oskelworks/Mirvane/PRM/";

struct CatalogueTest : Testing::TreeTest {
    void SetUp() override {
        TreeTest::SetUp();
        Testing::ScriptedPlugin::add("Rig");
    }

    /// Builds the catalogue and returns its names.
    std::vector<std::string> build() const {
        core->buildCatalogue();
        std::vector<std::string> names;
        for (std::int32_t i = 0; i < core->getCatalogueSize(); ++i)
            names.push_back(core->getCatalogueEntry(i)->getName());
        return names;
    }
    InstanceManager::Instanciatable& entry(std::int32_t index) const {
        return *core->getCatalogueEntry(index);
    }
    static std::vector<std::string> requiredBy(const InstanceManager::Instanciatable& entry) {
        return entry.describePage().required;
    }
};

TEST_F(CatalogueTest, ModelsOfferWhatTheirFilesSay) {
    home.write(kShared + "b.prm",
               "<?xml version=\"1.0\"?>\n<MVR_Plugin path=\"/etc\"><name>Dolly</name><version>2.1"
               "</version><about>Rolls</about><category>Rigs</category><category/><category>Cars"
               "</category><type>Rig</type><MVR_Plugin><type>Rig</type><MVR_Plugin><type>Empty "
               "Plugin</type></MVR_Plugin></MVR_Plugin><MVR_Plugin><type>Rig</type></MVR_Plugin>"
               "<MVR_Plugin><type>two</type></MVR_Plugin></MVR_Plugin>");
    home.write(kShared + "a/two.PRM", "<MVR><MVR_Plugin><type>Dolly</type></MVR_Plugin>"
                                      "<MVR_Plugin><type>None</type></MVR_Plugin></MVR>");
    home.write(kShared + "c.prm", "<MVR_Plugin><name>Half</name><b></MVR_Plugin>");
    home.write(kShared + "notes.txt", "<MVR_Plugin/>");
    home.write(kOwn + ".prm", "");
    const Tag packed = toolData("Packed", "<version>7</version>");
    ASSERT_TRUE(ByteBuffer::compressed(packed.toText("\r\n", "\t", ""))
                    .writeFile(home.documents() + "/PRM/z.prm"));
    home.write("install/plugins/bad.so", "no library");
    EXPECT_NE(LibraryManager::instance()->loadLibrary(home.install() + "\\plugins\\bad.so"), 0);
    newLog();
    EXPECT_THAT(build(), ElementsAre("Rig", "Dolly", "Half", "two", "", "Packed"));
    EXPECT_THAT(newLog(), HasSubstr("c.prm: line 1, column 35: a close tag of another element"));

    EXPECT_EQ(core->getCatalogueEntry(6), nullptr);
    EXPECT_EQ(entry(0).getVersion(), "0.1.0");
    EXPECT_THAT(entry(0).getCategories(), ElementsAre("Tests"));
    EXPECT_EQ(entry(1).getVersion() + entry(1).getAbout(), "2.1Rolls");
    EXPECT_THAT(entry(1).getCategories(), ElementsAre("Rigs", "Cars"));
    EXPECT_THAT(requiredBy(entry(1)), ElementsAre("Rig", "two"));
    EXPECT_THAT(requiredBy(entry(3)), ElementsAre("Dolly"));
    EXPECT_EQ(entry(3).getVersion(), "1.0");
    EXPECT_EQ(entry(5).getVersion(), "7");
    const std::string folder = home.install() + "\\PRM";
    EXPECT_EQ(entry(1).getData().attribute("path"), folder);
    EXPECT_EQ(entry(1).getData().child("path").value(), folder);
    EXPECT_EQ(entry(3).getData().attribute("path"), folder + "\\a");

    Tag catalogue = getModels(*core)->getCatalogue();
    EXPECT_EQ(catalogue.childCount("entry"), 6);
    const Tag& tool = catalogue.child(0);
    EXPECT_EQ(tool.child("type").value(), "Rig");
    EXPECT_EQ(tool.child("description").value(), "A tool for tests");
    EXPECT_EQ(tool.childCount("library"), 0) << "built in";
    const Tag& refused = catalogue.child(6);
    EXPECT_TRUE(refused.hasName("refused"));
    EXPECT_EQ(refused.child("file").value(), home.install() + "/plugins/bad.so");
    EXPECT_THAT(refused.child("text").value(), HasSubstr("it can't be loaded: "));
    EXPECT_EQ(catalogue.child(1).child("category", 1).value(), "Cars");
    EXPECT_EQ(catalogue.child(1).child("required", 1).value(), "two");
    EXPECT_EQ(getModels(*core)->load(catalogue.child(5).child("file").value(), ""), 0);
    EXPECT_EQ(tree(), "Packed");
}

TEST_F(CatalogueTest, NoFolderMakesTheListingEndless) {
    home.write("elsewhere/far.prm", "<MVR_Plugin/>");
    home.write(kOwn + "near/x.prm/inner.prm", "<MVR_Plugin/>");
    const fs::path folder = home.documents() + "/PRM";
    fs::create_directory_symlink(folder, folder / "near/back");
    fs::create_directory_symlink("near", folder / "same");
    fs::create_directory_symlink(folder / "../../../../elsewhere", folder / "a");
    fs::create_symlink("nowhere.prm", folder / "b.prm");
    fs::create_symlink("loop.prm", folder / "loop.prm");
    ASSERT_EQ(mkfifo((folder / "pipe.prm").c_str(), 0600), 0);
    std::string deep = kOwn + "z";
    for (int i = 0; i < 40; ++i) {
        deep += "/d";
        home.write(deep + "/" + std::to_string(i) + ".prm", "<MVR_Plugin/>");
    }
    newLog();
    std::vector<std::string> names = build();
    EXPECT_EQ(names.size(), 1 + 2 + 30U);
    names.resize(4);
    EXPECT_THAT(names, ElementsAre("Rig", "far", "inner", "0"));
    EXPECT_THAT(newLog(), HasSubstr("Folders of models are nested too deeply"));
}

TEST_F(CatalogueTest, APageShowsItsEntryAndCreatesItBelowTheSelectedTool) {
    home.write(kShared + "rig/Dolly.prm", toolData("Boom").toText("", "", ""));
    home.write(kShared + "rig/mainicon_125_100.bmp", "BM");
    home.write(kShared + "spy.prm", toolData("s", "<path>/etc</path>").toText("", "", ""));
    build();
    const InstanceManager::Instanciatable::Page tool = entry(0).describePage();
    EXPECT_EQ(tool.layout, 196);
    EXPECT_EQ(tool.version, "Version: 0.1.0");
    EXPECT_EQ(tool.picture, R"([SHAREDDATAPATH]\CORE\icons\icon_primitive_substitute.bmp)");
    home.write("install/data/Rig/mainicon_125_100.bmp", "BM");
    EXPECT_EQ(entry(0).describePage().picture, R"([SHAREDDATAPATH]\Rig\mainicon_125_100.bmp)");
    EXPECT_EQ(entry(1).describePage().picture,
              R"([SHAREDDATAPATH]\CORE\icons\icon_prm_substitute.bmp)");
    EXPECT_EQ(entry(2).describePage().layout, 197);
    EXPECT_EQ(entry(2).describePage().picture,
              Platform::canonicalPath(home.install() + "/PRM/rig/mainicon_125_100.bmp"));

    core->getControl().select(place("base"));
    entry(2).create();
    EXPECT_EQ(tree(), "base(Boom)");
    find("base")->remove(true);
    entry(0).create();
    EXPECT_EQ(tree(), "Rig_01") << "the selected tool waits in the host's list";
    core->deleteAllInstances();
    adaptor.clearUndo();
    entry(0).create();
    EXPECT_EQ(tree(), "Rig_01") << "nothing is selected when the tool is gone";
    EXPECT_EQ(core->getRecentLabel(0) + core->getRecentLabel(1), "BoomRig");
}

TEST_F(CatalogueTest, ADamagedModelIsToldWhenItIsCreated) {
    const std::string text = "<MVR>" + toolData("Boom").toText("", "", "");
    home.write(kShared + "cut.prm", text + "<MVR_Plugin><type>");
    home.write(kShared + "whole.prm", text + "</MVR>");
    build();
    entry(1).create();
    ASSERT_EQ(getFaults(*core)->list().size(), 1U);
    EXPECT_THAT(toText(getFaults(*core)->list()[0]), HasSubstr("cut.prm: line 1, column "));
    EXPECT_EQ(tree(), "Boom");
    entry(2).create();
    EXPECT_EQ(getFaults(*core)->list().size(), 0U);
}

} // namespace
