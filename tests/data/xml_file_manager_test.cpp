#include "data/sdk/xml_file_manager.h"

#include "core/base/sdk/log.h"
#include "core/util/sdk/singleton.h"
#include "platform/temporary_folder.h"

#include <gmock/gmock.h>

#include <sstream>

namespace {

using namespace MVR;
using testing::HasSubstr;

/// A list whose files have a line "name value" for each element.
class LineList final : public XMLFileManager {
public:
    std::string saveToFile(Tag element, std::string folder) override {
        if (!isWritable)
            return "";
        const std::string path = folder + "/" + element.name() + ".lst";
        std::ofstream(path) << element.name() << " " << element.attribute("value") << "\n";
        return path;
    }
    std::vector<Tag> loadFile(std::string path) override {
        std::vector<Tag> elements;
        std::ifstream file(path);
        for (std::string name, value; file >> name >> value;) {
            elements.push_back(Tag::element(name));
            elements.back().attributeRef("value") = value;
        }
        return elements;
    }
    void removeFromFile(Tag element, std::string path) override {
        removed += element.name() + "@" + std::filesystem::path(path).filename().string() + " ";
    }
    std::string elementName(const Tag& element) const override { return element.name(); }
    std::string fileFilter() const override { return "*.lst"; }

    /// "name=value@file" of each element, in order.
    std::string text() const {
        std::string all;
        for (std::int32_t i = 0; i < elementCount(); ++i) {
            const FileElement& each = *element(i);
            all += (i == 0 ? "" : " ") + each.name + "=" + each.data.attribute("value") + "@" +
                   std::filesystem::path(elementFile(each.name)).filename().string();
            EXPECT_EQ(findElement(each.name), &each);
        }
        return all;
    }

    bool isWritable = true;
    std::string removed;
};

struct FileListTest : testing::Test {
    FileListTest() {
        list.addReadOnlyName("Factory");
        list.addSourcePath(folder.add("shared.xml", "A 1\nB 1\nfactory 1\n"));
        folder.add("own/b.lst", "B 2\nC 2");
        folder.add("own/c.LST", "C 3");
        folder.add("own/d.txt", "D 4");
        folder.add("own/deeper.lst/e.lst", "E 5");
        list.addSourcePath(folder.path + "own");
        list.setDestinationPath(folder.path + "own");
    }
    ~FileListTest() override { Util::SingletonCollector::destroyAll(); }

    static Tag tag(const std::string& name, const std::string& value) {
        Tag made = Tag::element(name);
        made.attributeRef("value") = value;
        return made;
    }

    TemporaryFolder folder;
    LineList list;
};

TEST_F(FileListTest, LaterSourcesReplaceAtTheSamePosition) {
    folder.add("own.old/f.lst", "F 6");
    for (const char* path : {"missing", "missing.xml", "own.old"})
        list.addSourcePath(folder.path + path);
    const std::string all = "A=1@shared.xml B=2@b.lst C=3@c.LST";
    for (int round = 0; round < 2; ++round) {
        list.reload();
        EXPECT_EQ(list.text(), all) << "reserved, foreign, deeper and dotted ones are not read";
        EXPECT_EQ(list.addElement(tag("Loose", "9"), false, false), 0);
    }
    EXPECT_EQ(list.text(), all + " Loose=9@");
    EXPECT_EQ(list.element(-1), nullptr);
    EXPECT_EQ(list.element(4), nullptr);
    EXPECT_EQ(list.findElement("a"), nullptr) << "names differ in case";
}

TEST_F(FileListTest, ElementsAreAddedReplacedAndRemoved) {
    list.reload();
    struct Step {
        const char* does; ///< "+name" add, "s" with a file, "f" by force; "-name" remove
        std::int32_t result;
        const char* list;
    } const steps[] = {
        {"+FACTORY", 1, "A=1@shared.xml B=2@b.lst C=3@c.LST"},
        {"s+Factory", 1, "A=1@shared.xml B=2@b.lst C=3@c.LST"},
        {"f+Factory", 0, "A=1@shared.xml B=2@b.lst C=3@c.LST Factory=+@"},
        {"-Factory", 1, "A=1@shared.xml B=2@b.lst C=3@c.LST Factory=+@"},
        {"s+B", 0, "A=1@shared.xml B=+@B.lst C=3@c.LST Factory=+@"},
        {"s+N", 0, "A=1@shared.xml B=+@B.lst C=3@c.LST Factory=+@ N=+@N.lst"},
        {"-A", 0, "B=+@B.lst C=3@c.LST Factory=+@ N=+@N.lst"},
        {"-B", 0, "C=3@c.LST Factory=+@ N=+@N.lst"},
        {"-B", 0, "C=3@c.LST Factory=+@ N=+@N.lst"},
        {"+B", 0, "C=3@c.LST Factory=+@ N=+@N.lst B=+@"},
        {"+N", 0, "C=3@c.LST Factory=+@ N=+@N.lst B=+@"},
        {"-B", 0, "C=3@c.LST Factory=+@ N=+@N.lst"},
    };
    for (const Step& step : steps) {
        const std::string does = step.does;
        const std::string name = does.substr(does.find_first_of("+-") + 1);
        const std::int32_t result =
            does[0] == '-' ? list.removeElement(name)
                           : list.addElement(tag(name, "+"), does[0] == 's', does[0] == 'f');
        EXPECT_EQ(result, step.result) << does;
        EXPECT_EQ(list.text(), step.list) << does;
    }
    EXPECT_EQ(list.removed, "A@shared.xml B@B.lst ") << "only what has a file leaves one";
    EXPECT_THAT(Log::getText(), HasSubstr("Name is reserved read-only. Aborting"));
    EXPECT_FALSE(std::filesystem::exists(folder.path + "own/Factory.lst"));

    EXPECT_EQ(list.addElement(list.element(0)->data, false, false), 0) << "its own element";
    EXPECT_EQ(list.findElement("C")->data.attribute("value"), "3");
}

TEST_F(FileListTest, WhatCannotBeWrittenIsStillInTheList) {
    list.reload();
    list.isWritable = false;
    EXPECT_EQ(list.addElement(tag("C", "7"), true, false), 0);
    EXPECT_EQ(list.text(), "A=1@shared.xml B=2@b.lst C=7@");
    list.isWritable = true;
    list.setDestinationPath("");
    EXPECT_EQ(list.addElement(tag("D", "8"), true, false), 0);
    EXPECT_EQ(list.text(), "A=1@shared.xml B=2@b.lst C=7@ D=8@");
    EXPECT_FALSE(std::filesystem::exists("/D.lst"));
    EXPECT_THAT(Log::getText(), HasSubstr("No folder to save to"));
}

TEST_F(FileListTest, AFolderIsReadUpToItsLimit) {
    for (std::size_t i = 0; i <= XMLFileManager::kMostFiles; ++i)
        folder.add("many/" + std::to_string(i) + ".lst");
    folder.add("many/zz.lst", "Z 1");
    list.addSourcePath(folder.path + "many");
    list.reload();
    EXPECT_EQ(list.findElement("Z"), nullptr);
    EXPECT_THAT(Log::getText(), HasSubstr("Too many files, the rest is not read: "));
}

} // namespace
