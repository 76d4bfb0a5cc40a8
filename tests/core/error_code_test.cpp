#include "core/base/sdk/error_code.h"

#include "core/base/error_codes.h"
#include "core/base/sdk/log.h"
#include "support/vtable_slot.h"

#include <gmock/gmock.h>

#include <string>

namespace {

using MVR::ErrorCode;
using MVR::Log;
using testing::HasSubstr;

struct ErrorCodeTest : testing::Test {
    ErrorCodeTest() { MVR::registerCommonCodes(); }
    ~ErrorCodeTest() override { MVR::Util::SingletonCollector::destroyAll(); }
    ErrorCode& codes() { return *ErrorCode::instance(); }
};

TEST_F(ErrorCodeTest, CommonCodesHaveFixedValuesAndOthersTheNextFreeOne) {
    EXPECT_EQ(codes().find(0).getIdentifier(), "SUCCESS");
    EXPECT_EQ(codes().report("GENERAL"), 1024);
    EXPECT_EQ(codes().report("COULDNOTINSTANCIATEPLUGIN"), 1032);
    const std::int32_t first = codes().get("MINE", "My own failure", ErrorCode::Warning);
    EXPECT_EQ(first, 1033);
    EXPECT_EQ(codes().get("MINE", "Other words", ErrorCode::Error), first);
    EXPECT_EQ(codes().find(first).getMessage(), "My own failure");

    const ErrorCode twin("MINE", "A twin", ErrorCode::Error); // draws 1034
    EXPECT_EQ(codes().registerCode(twin), first);
    EXPECT_FALSE(codes().isRegistered(1034));
    EXPECT_EQ(codes().get("NEXT", "Next", ErrorCode::Error), 1035);
    ErrorCode copy(twin);
    copy = codes().find(first);
    EXPECT_EQ(codes().registerCode(copy).getIdentifier(), "ERRORCODE_NONUNIQUEVALUE");
    EXPECT_EQ(copy.registerCode(twin).getIdentifier(), "ERRORCODE_NONCONTAINER");
    EXPECT_TRUE(copy == codes().find(first));
    EXPECT_FALSE(copy == twin);
}

TEST_F(ErrorCodeTest, ReportsAreLoggedByTheirType) {
    const struct {
        ErrorCode::Type type;
        const char* word;
    } rows[] = {{ErrorCode::Fatal, "(ERROR)"},
                {ErrorCode::Error, "(ERROR)"},
                {ErrorCode::Warning, "(WARNING)"},
                {ErrorCode::Notice, "(WARNING)"},
                {ErrorCode::Success, "(ERROR)"}};
    for (const auto& row : rows) {
        const std::string name = "TYPE" + std::to_string(row.type);
        ASSERT_NE(codes().get(name, name + " message", row.type), -1);
        const std::string before = Log::getText();
        EXPECT_EQ(codes().report(name).getType(), row.type);
        const std::string line = Log::getText().substr(before.size());
        EXPECT_THAT(line, HasSubstr(row.word));
        EXPECT_THAT(line, HasSubstr("Return value: " + name + " message\n"));
    }
    EXPECT_EQ(codes().report("UNKNOWN"), -1);
    EXPECT_THAT(Log::getText(), HasSubstr("(ERROR): Return value: (Error code not found)\n"));
    EXPECT_EQ(codes().find(5).getIdentifier(), "NOTFOUND");
    EXPECT_THAT(Log::getText(), HasSubstr("(WARNING): Errorcode not found. value: 5\n"));
}

TEST(ErrorCodeContract, TheOrderOfOperationsIsFrozen) {
    using ByName = bool (ErrorCode::*)(const std::string&) const;
    using ByValue = bool (ErrorCode::*)(std::int32_t) const;
    using ByCode = bool (ErrorCode::*)(const ErrorCode&) const;
    // Behind the singleton's own operation and the two slots of the destructor.
    MVR::Testing::expectSlots(
        "codes", 3, &ErrorCode::getType, &ErrorCode::getValue, &ErrorCode::getIdentifier,
        &ErrorCode::getMessage, &ErrorCode::get, &ErrorCode::report, &ErrorCode::find,
        ByName(&ErrorCode::isRegistered), ByValue(&ErrorCode::isRegistered),
        &ErrorCode::registerCode, &ErrorCode::operator=, ByValue(&ErrorCode::operator==),
        ByCode(&ErrorCode::operator==), &ErrorCode::operator std::int32_t);
}

} // namespace
