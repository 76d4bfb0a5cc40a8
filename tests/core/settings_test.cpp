#include "core/settings/settings_property.h"

#include "support/core_fixture.h"

#include <gmock/gmock.h>

#include <limits>
#include <string>

namespace {

using namespace MVR;
using namespace MVR::Testing;
using testing::HasSubstr;

constexpr const char* kSharedFile = "install/data/Stage/settings.xml";
constexpr const char* kUserFile = "documents/Oskelworks/Mirvane/data/Stage/settings.xml";

std::string element(const std::string& id, const std::string& value) {
    return "<element id=\"" + id + "\">" + value + "</element>";
}

struct SettingsTest : CoreTest {
    void SetUp() override {}
    void TearDown() override {
        if (core != nullptr)
            CoreTest::TearDown();
    }
    void attachWith(const std::string& shared, const std::string& user) {
        home.write(kSharedFile, "<MVRConfig>" + shared + "</MVRConfig>");
        home.write(kUserFile, "<MVRConfig>" + user + "</MVRConfig>");
        CoreTest::SetUp();
    }
    void reattach() {
        ASSERT_EQ(detachCore(core), 0);
        core = static_cast<CoreImplementation*>(attachAdaptor(&adaptor));
    }
    template <class T>
    T get(std::int32_t id) {
        T value{};
        EXPECT_TRUE(core->getProperty(id, &value)) << id;
        return value;
    }
};

TEST_F(SettingsTest, TheUsersFileWinsOverTheSharedOneAndBothOverTheDefaults) {
    attachWith(element("105", "5") + element("106", "6") + element("102", "0"),
               element("106", "7") + element("-1", "9") + element("999", "9") +
                   element("109", "none") + "<element id=\"103\"/><other id=\"105\">1</other>");
    EXPECT_EQ(get<std::int32_t>(Setting::kStartCountdown), 5);
    EXPECT_EQ(get<std::int32_t>(Setting::kEndCountdown), 7);
    EXPECT_EQ(get<std::int32_t>(Setting::kRecentItems), 10);
    EXPECT_FALSE(get<bool>(Setting::kSilentMode));
    EXPECT_TRUE(core->getAutoExpand());
    std::int32_t untouched = 42;
    EXPECT_FALSE(core->getProperty(999, &untouched));
    EXPECT_FALSE(core->getProperty(Setting::kSilentMode, nullptr));
    EXPECT_FALSE(core->setProperty(Setting::kSilentMode, nullptr));
    EXPECT_FALSE(core->setProperty(999, &untouched));
    EXPECT_EQ(untouched, 42);
}

TEST_F(SettingsTest, ValuesComeBackExactlyAfterTheNextAttachment) {
    attachWith("", "");
    const double numbers[] = {0.1, 1e-300, -12345678.901234567, 1.0 / 3,
                              std::numeric_limits<double>::max()};
    for (int index = 0; index < 5; ++index)
        core->addProperty(500 + index, numbers[index]);
    core->addProperty(600, std::string("  <\"a\" & 'b'>\n\xC3\xA9 "));
    core->setStartCountdown(-7);
    core->setAutoExpand(false);
    reattach();
    for (int index = 0; index < 5; ++index) {
        core->addProperty(500 + index, 0.0);
        EXPECT_EQ(get<double>(500 + index), numbers[index]);
    }
    core->addProperty(600, std::string());
    EXPECT_EQ(get<std::string>(600), "  <\"a\" & 'b'>\n\xC3\xA9 ");
    EXPECT_EQ(core->getStartCountdown(), -7);
    EXPECT_FALSE(core->getAutoExpand());
    const std::string file = readText(home.documents() + "/data/Stage/settings.xml");
    EXPECT_THAT(file, HasSubstr("<MVRConfig>\n\t<element id=\"101\">High</element>\n"));
    EXPECT_THAT(file, HasSubstr("<element id=\"102\">1</element>"));
    EXPECT_THAT(file, HasSubstr("<element id=\"109\">0</element>"));
}

TEST_F(SettingsTest, AnAddedPropertyReadsTheFilesAgainAndOneInUseDoesNot) {
    attachWith(element("105", "6"),
               element("500", "2.5") + element("105", "4") + element("-2", "9"));
    core->setStartCountdown(1);
    core->setEndCountdown(1);
    Util::MessageNode* const node = core->addProperty(500, 1.0);
    ASSERT_NE(node, nullptr);
    EXPECT_EQ(get<double>(500), 2.5);
    EXPECT_EQ(core->getStartCountdown(), 4);
    EXPECT_EQ(core->getEndCountdown(), 1) << "no file has it";
    core->addProperty(-2, std::int32_t{3});
    EXPECT_EQ(get<std::int32_t>(-2), 3);

    const double changed = 7;
    core->setProperty(500, &changed);
    EXPECT_EQ(core->addProperty(500, std::string("other")), node);
    EXPECT_EQ(get<double>(500), 7);
    node->setName("mine");

    // One that its creator destroys leaves the list.
    static_cast<SettingsManager::Property*>(node)->destroy();
    double value = 1;
    EXPECT_FALSE(core->getProperty(500, &value));
}

TEST_F(SettingsTest, TheLogLevelIsAppliedAtAttachment) {
    const struct {
        const char* text;
        std::int32_t threshold;
    } rows[] = {{"Disabled", 0}, {"Low", 1}, {"High", 2}, {"Debug", 3}, {"Other", 3}};
    attachWith("", "");
    for (const auto& row : rows) {
        Log::setThreshold(Log::Notice);
        const std::string level = row.text;
        core->setProperty(Setting::kLogLevel, &level);
        reattach();
        EXPECT_EQ(Log::getThreshold(), row.threshold) << row.text;
        EXPECT_EQ(get<std::string>(Setting::kLogLevel), row.text);
    }
}

TEST_F(SettingsTest, WhatIsWholeInADamagedFileCountsAndTheFileIsKeptBesideTheNewOne) {
    const std::string folder = home.documents() + "/data/Stage/";
    const struct {
        std::string file;
        std::string text;
        const char* copy;
    } cases[] = {
        {"settings.xml", "<MVRConfig>" + element("105", "8") + "<element id=\"106\">9",
         "settings.xml.bad"},
        {"settings.xml", "<MVRConfig>" + element("105", "8") + "</MVRConfi>", "settings.xml.bad2"},
        {"settings.xml", "<Other>" + element("105", "8") + "</Other>", "settings.xml.bad3"},
        {"recent.xml", "<Recent><MVR><a/></MVR><MVR>", "recent.xml.bad"},
    };
    attachWith(element("105", "5"), "");
    for (const auto& each : cases) {
        ASSERT_EQ(detachCore(core), 0);
        home.write("documents/Oskelworks/Mirvane/data/Stage/" + each.file, each.text);
        core = static_cast<CoreImplementation*>(attachAdaptor(&adaptor));
        EXPECT_EQ(core->getStartCountdown(), 8) << each.text;
        EXPECT_EQ(core->getEndCountdown(), 3);
        EXPECT_EQ(readText(folder + each.file), each.text) << "loading changes nothing";
        reattach();
        EXPECT_EQ(core->getStartCountdown(), 8) << each.text;
        const std::string copy = folder + each.copy; // the first stays when there is a second
        EXPECT_EQ(readText(copy), each.text) << each.copy;
    }
    EXPECT_EQ(core->getRecentCount(), 1);
}

} // namespace
