#include "core/base/sdk/log.h"

#include "support/vtable_slot.h"

#include <gtest/gtest.h>

#include "platform/sdk/clock.h"
#include "platform/sdk/files.h"

#include <filesystem>
#include <string>

namespace {

using MVR::Log;

struct LogTest : testing::Test {
    ~LogTest() override { MVR::Util::SingletonCollector::destroyAll(); }
    // 2001-02-03 04:05:06 in UTC.
    MVR::Platform::HandClock clock{0, 981173106000};
};

TEST_F(LogTest, LinesCarryTimeLevelAndDepth) {
    {
        Log(Log::Notice).write("outside");
        Log outer("outer", Log::Notice);
        {
            Log inner("inner", Log::Warning);
            inner.write("name", "value", Log::OwnLevel);
            inner.write("count", -7, Log::Critical);
            Log(Log::Error).write("unscoped");
        }
        outer.write("after", Log::Trace);
        outer.write(std::string("after"));
    }
    Log(Log::Warning).write("end", Log::OwnLevel);
    const std::string time = "20010203 04:05:06 ";
    EXPECT_EQ(Log::getText(), time + "(NOTICE): outside\n" + time + "(NOTICE): \touter\n" + time +
                                  "(WARNING): \t\tinner\n" + time + "(WARNING): \t\tname: value\n" +
                                  time + "(CRITICAL): \t\tcount: -7\n" + time +
                                  "(ERROR): \t\tunscoped\n" + time + "(NOTICE): \tafter\n" + time +
                                  "(WARNING): end\n");
}

TEST_F(LogTest, TheThresholdHoldsBackLinesButNotTheDepth) {
    Log::setThreshold(Log::Critical);
    {
        Log entry("silent", Log::Error);
        entry.write("loud", Log::Critical);
    }
    Log::setThreshold(Log::Trace);
    Log(Log::Trace).write("trace");
    EXPECT_EQ(Log::getText(), "20010203 04:05:06 (CRITICAL): \tloud\n20010203 04:05:06 (trace\n");
}

TEST_F(LogTest, TheFileHoldsWhatWasWrittenWhileItWasOpenAndEndsInOrder) {
    const std::string folder = testing::TempDir() + "/log_test";
    std::filesystem::create_directory(folder);
    Log(Log::Notice).write("before");
    Log::setFile(folder + "\\missing\\\\core.log"); // works on in memory
    Log(Log::Notice).write("unwritable");
    Log::setFile(folder + "\\\\core.log");
    Log(Log::Notice).write("in the file");
    EXPECT_TRUE(Log::saveTo(folder + "/saved.log"));
    EXPECT_FALSE(Log::saveTo(folder + "/missing/saved.log"));
    const std::string all = Log::getText();
    MVR::Util::SingletonCollector::destroyAll();

    std::string text;
    ASSERT_TRUE(MVR::Platform::readFile(folder + "/core.log", text));
    EXPECT_EQ(text, "20010203 04:05:06 (NOTICE): in the file\n[EOF]\n");
    ASSERT_TRUE(MVR::Platform::readFile(folder + "/saved.log", text));
    EXPECT_EQ(text, all);
    EXPECT_NE(all.find("unwritable"), std::string::npos);
    std::filesystem::remove_all(folder);
}

TEST(LogContract, WriteHasTwoSlotsInARowAfterTheSingletons) {
    using MVR::Testing::slotOf;
    EXPECT_EQ(slotOf(&Log::destroySingleton), 0);
    EXPECT_EQ(slotOf<void (Log::*)(const char*, std::int32_t)>(&Log::write), 3);
    EXPECT_EQ(slotOf<void (Log::*)(std::string_view, std::int32_t)>(&Log::write), 4);
}

} // namespace
