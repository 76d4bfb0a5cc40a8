#include "stage/commands/record_options.h"

#include "platform/temporary_folder.h"
#include "stage/base/text.h"

#include <gtest/gtest.h>

#include <sstream>
#include <string>
#include <vector>

namespace Stage {
namespace {

TEST(RecordOptions, OptionsBelongToWhatPrecedesThem) {
    RecordOptions options;
    std::string error;
    std::vector<std::string> words;
    std::istringstream line(
        "--tool|Free Camera|--bind|Pan=Pad:y|--bind|Pan=Pad#1:axis:x:3|--set=Pan.offset=-2.5|"
        "--tool=Free Camera|--name|B|--seconds|2|--rate|60|--out|a.gltf|--latency-bind|OSC:/sent:0|"
        "--resimulate|--set|B/*.multiplier=2|--out|b.gltf|"
        "--resimulate|--set|Free Camera/Pan.exponent=+1e1");
    for (std::string word; std::getline(line, word, '|');)
        words.push_back(word);
    ASSERT_TRUE(readRecordOptions(words, options, error)) << error;
    ASSERT_EQ(options.tools.size(), 2U);
    EXPECT_EQ(options.tools[0].name, "Free Camera_01");
    EXPECT_EQ(options.tools[1].name, "B");
    ASSERT_EQ(options.tools[0].bindings.size(), 1U) << "the later one of a property replaces";
    const Binding& binding = options.tools[0].bindings[0];
    EXPECT_EQ(binding.property, "Pan");
    EXPECT_EQ(binding.device, "Pad");
    EXPECT_EQ(binding.deviceIndex, 1);
    EXPECT_EQ(binding.type, "axis:x");
    EXPECT_EQ(binding.index, 3);
    EXPECT_EQ(options.tools[0].settings.at(0).value, -2.5);
    EXPECT_EQ(options.latency->type, "/sent");
    EXPECT_FALSE(options.take.autoExpand) << "a take of a given length stops there";
    EXPECT_EQ(options.end, 2);
    ASSERT_EQ(options.passes.size(), 3U);
    EXPECT_EQ(options.passes[0].out, "a.gltf");
    EXPECT_EQ(options.passes[1].out, "b.gltf");
    const Setting& first = options.passes[1].settings.at(0);
    EXPECT_EQ(first.toText(), "B/*.multiplier=2");
    EXPECT_FALSE(options.tools[0].isMeantBy(first));
    EXPECT_TRUE(options.tools[1].isMeantBy(first));
    EXPECT_TRUE(options.tools[0].isMeantBy(options.passes[2].settings.at(0)));
}

TEST(RecordOptions, WrongOnesAreReportedInTheUsersWords) {
    const struct {
        std::vector<std::string> words;
        const char* message;
    } cases[] = {
        {{}, "give at least one --tool"},
        {{"--secnds", "2"}, "did you mean --seconds?"},
        {{"take.gltf"}, "belong to an option"},
        {{"--tool"}, "--tool needs a value: TYPE"},
        {{"--undo-redo=yes"}, "accepts no value"},
        {{"--bind", "A=B:c"}, "must follow the --tool"},
        {{"--tool", "T", "--bind", "Position X"}, "is not a binding"},
        {{"--tool", "T", "--bind", "A=B:c:99999999999"}, "is not a binding"},
        {{"--tool", "T", "--set", "X.offset=1e999"}, "is not of the form"},
        {{"--tool", "T", "--set", "X.multiplyer=2"}, "multiplier, exponent, deadzone or offset"},
        {{"--tool", "T", "--set", "X.deadzone=1"}, "leaves nothing"},
        {{"--tool", "T", "--rate", "0"}, "at least 0.1"},
        {{"--tool", "T", "--rate", "1e6"}, "at most 100000"},
        {{"--tool", "T", "--rate", "fast"}, "\"fast\" is not a number"},
        {{"--tool", "T", "--countdown", "1.5"}, "whole number from 0 to 3600"},
        {{"--tool", "T", "--slow-motion", "11"}, "from 1 to 10"},
        {{"--tool", "T", "--end", "1", "--seconds", "1"}, "give only one"},
        {{"--tool", "T", "--start", "5", "--end", "5"}, "before its first frame"},
        {{"--tool", "T", "--resimulate", "--tool", "U"}, "before the first --resimulate"},
        {{"--tool", "T", "--bindings", "/nowhere/x"}, "can't read /nowhere/x"},
    };
    for (const auto& wrong : cases) {
        RecordOptions options;
        std::string error;
        EXPECT_FALSE(readRecordOptions(wrong.words, options, error));
        EXPECT_NE(error.find(wrong.message), std::string::npos) << error;
    }
}

TEST(ToolPlan, AFileSaysTheSameAsTheOptions) {
    TemporaryFolder folder;
    const std::string path =
        folder.add("bindings.txt",
                   "# a rig\r\n\r\nbind A = OSC:/a:1\nset *.deadzone=0\n  set A.deadzone = 0.5");
    ToolPlan plan{"T", "T_01", {}, {}};
    std::string error;
    ASSERT_TRUE(readPlanFile(path, plan, error)) << error;
    const MVR::Tag property = toProfile(plan).child("property");
    EXPECT_EQ(property.attribute("name"), "A");
    EXPECT_EQ(property.childCount("deadzone"), 1);
    EXPECT_EQ(property.child("deadzone").value(), "0.5") << "the later one counts";
    EXPECT_EQ(property.child("control").attribute("type"), "/a");
    EXPECT_EQ(property.child("control").attribute("index"), "1");

    const std::pair<std::string, const char*> wrongs[] = {
        {"bind A=B:c\nbond A=B:c\n", "bindings.txt:2: a line must begin with"},
        {std::string(10'001, '\n'), "bindings.txt:10001: a file of bindings has at most 10000"},
        {std::string((1 << 20) + 1, '#'), "bindings.txt: File too large"}};
    for (const auto& [text, message] : wrongs) {
        EXPECT_FALSE(readPlanFile(folder.add("bindings.txt", text), plan, error));
        EXPECT_NE(error.find(message), std::string::npos) << error;
    }
}

TEST(Text, AnyBytesBecomeUtf8) {
    const struct {
        const char* bytes;
        const char* text;
    } cases[] = {{"plain", "plain"},
                 {"\xc3\xa4\xe2\x82\xac\xf0\x9f\x8e\xa5", "\xc3\xa4\xe2\x82\xac\xf0\x9f\x8e\xa5"},
                 {"\xe4", "?"},                 // cut short
                 {"\xe2\x82", "??"},            // cut short in the middle
                 {"\xc0\xaf", "??"},            // longer than needed
                 {"\xed\xa0\x80", "???"},       // half of a pair
                 {"\xf4\x90\x80\x80", "????"}}; // beyond the last character
    for (const auto& bytes : cases)
        EXPECT_EQ(toUtf8(bytes.bytes), bytes.text);
}

} // namespace
} // namespace Stage
