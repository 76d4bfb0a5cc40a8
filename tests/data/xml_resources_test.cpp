#include "data/xml_resources.h"

#include "core/base/folders.h"
#include "platform/temporary_folder.h"

#include <gtest/gtest.h>

#include <cstdlib>

namespace MVR {
namespace {

TEST(XmlResourcesTest, ExpandsTheTwoPathMacros) {
    TemporaryFolder folder;
    // Folders whose names hold a macro must not be expanded without end.
    const std::string registry = folder.add("registry.ini", R"(
        [Software\Microsoft\Windows\CurrentVersion\Explorer\Shell Folders]
        Personal=/home/[DATAPATH]
        [SOFTWARE\Oskelworks\Lensetta]
        datapath=/shared)");
    setenv("MIRVANE_REGISTRY", registry.c_str(), 1);
    const std::string user = resolveDocumentsPath() + "\\data";
    const std::string shared = "/shared";
    const struct {
        std::string path;
        std::string expanded;
    } cases[] = {
        {"[DATAPATH]\\x.bmp", user + "\\x.bmp"},
        {"[SHAREDDATAPATH]/core/x.bmp", shared + "/core/x.bmp"},
        {"[DATAPATH][SHAREDDATAPATH][DATAPATH]", user + shared + user},
        {"[datapath]/[OTHER]/[DATAPATH", "[datapath]/[OTHER]/[DATAPATH"},
        {"", ""},
    };
    for (const auto& c : cases)
        EXPECT_EQ(expandPathMacros(c.path), c.expanded) << c.path;
    setenv("MIRVANE_REGISTRY", folder.add("empty.ini", "").c_str(), 1);
    EXPECT_EQ(expandPathMacros("[SHAREDDATAPATH]/core/x.bmp"), "/core/x.bmp");
    EXPECT_EQ(expandPathMacros("[DATAPATH]/x"), "\\data/x");
    unsetenv("MIRVANE_REGISTRY");
    EXPECT_TRUE(loadXmlResource(1).isEmpty());
}

} // namespace
} // namespace MVR
