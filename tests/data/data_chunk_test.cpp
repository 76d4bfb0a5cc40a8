#include "data/sdk/data_chunk.h"

#include "data/sdk/base64_buffer.h"
#include "data/sdk/packed_tag.h"

#include <gtest/gtest.h>

#include <random>

namespace MVR {
namespace {

using Util::DataChunk;

std::string bytes(const Base64Buffer& buffer) {
    return std::string(buffer.bytes().view());
}

std::string encoded(std::string_view bytes) {
    return Base64Buffer(bytes.data(), bytes.size()).toText();
}

TEST(Base64BufferTest, WritesAndReadsEachLengthOfTheLastGroup) {
    const std::pair<std::string, std::string> cases[] = {
        {"", ""},
        {"a", "YQ=="},
        {"ab", "YWI="},
        {"abc", "YWJj"},
        {"abcd", "YWJjZA=="},
        {std::string(3, '\0'), "AAAA"},
        {"\xFB\xFF\xBF", "+/+/"},
    };
    for (const auto& [plain, text] : cases) {
        EXPECT_EQ(encoded(plain), text);
        EXPECT_EQ(bytes(Base64Buffer(text)), plain) << text;
    }
    std::mt19937 random(3);
    std::string plain;
    for (int size = 0; size < 400; ++size, plain += static_cast<char>(random()))
        ASSERT_EQ(bytes(Base64Buffer(encoded(plain))), plain);
}

TEST(Base64BufferTest, ReadsOddPaddingAndRefusesTheRest) {
    const std::pair<std::string, std::string> sound[] = {
        {"YWJjYQ==YWJj", "abcaabc"},        // a padded group in the middle
        {"YWI=YQ==", "aba"},                //
        {"YQ=x", std::string("a\0", 2)},    // only the third character is "="
        {"YW=!YWJj", std::string("a`abc")}, // whatever the fourth is
        {"YR==", "a"},                      // bits after the last byte
    };
    for (const auto& [text, plain] : sound)
        EXPECT_EQ(bytes(Base64Buffer(text)), plain) << text;
    for (const std::string text : {"YWJ", "YWJjY", "YW Jj   ", "YWJjYW\nJ", "=WJj", "Y===", "YW!j",
                                   "YW-_", "YWJjYWJ\x80", "!WJjYWJj", "YWJjYWJjYQ!="})
        EXPECT_EQ(Base64Buffer(text).size(), 0u) << text;
    EXPECT_EQ(Base64Buffer(std::string("YW\0j", 4)).size(), 0u);
}

TEST(Base64BufferTest, CopiesOnlyIntoEnoughRoom) {
    char room[4] = "---";
    EXPECT_FALSE(Base64Buffer("YWJj").copyTo(room, 2));
    EXPECT_STREQ(room, "---");
    EXPECT_TRUE(Base64Buffer("YWJj").copyTo(room, 3));
    EXPECT_STREQ(room, "abc");
}

std::string flat(DataChunk chunk) {
    std::int32_t size = -1;
    const void* start = chunk.serialize(size);
    return start ? std::string(static_cast<const char*>(start), size) : std::string("none");
}

std::string payload(const DataChunk& chunk) {
    return std::string(chunk.data(), chunk.data() + chunk.size());
}

std::string head(std::uint32_t dataSize, std::uint32_t children, std::uint32_t nameSize) {
    std::string out;
    for (std::uint32_t value : {dataSize, children, nameSize})
        for (int i = 0; i < 4; ++i)
            out += static_cast<char>(value >> 8 * i);
    return out;
}

TEST(DataChunkTest, WritesTheFlatFormAndReadsItBack) {
    EXPECT_EQ(flat(DataChunk()), std::string(12, '\0'));
    DataChunk inner("in", "xyz", 3);
    inner.addChild(DataChunk("zero", nullptr, 2)).addChild(DataChunk());
    DataChunk root;
    root.setName("root");
    root.setData("\1\2", 2);
    root.addChild(inner).addChild(DataChunk("in", "second", 6));
    root.addChild(root); // a copy of itself as it is now
    const std::string own = head(2, 2, 4) + "root\1\2" + head(3, 2, 2) + "inxyz" + head(2, 0, 4) +
                            std::string("zero\0\0", 6) + head(0, 0, 0) + head(6, 0, 2) + "insecond";
    const std::string form = head(2, 3, 4) + own.substr(12) + own;
    ASSERT_EQ(flat(root), form);

    DataChunk read("old", "data", 4);
    const std::string longer = form + "more";
    EXPECT_EQ(read.parse(longer.data(), longer.size()), longer.data() + form.size());
    EXPECT_EQ(flat(read), form);
    EXPECT_EQ(payload(read.child("in")), "xyz"); // the first of that name
    EXPECT_TRUE(read.child("root").child("in").hasChild("zero"));
}

TEST(DataChunkTest, ReturnsAnEmptyChunkForAMissingOne) {
    DataChunk root;
    EXPECT_FALSE(root.hasChild("a"));
    root.child("a").setData("left", 4);
    EXPECT_EQ(root.child("b").size(), 0u);
    root.addChild(DataChunk("", "n", 1));
    EXPECT_TRUE(root.hasChild(""));
    EXPECT_EQ(std::as_const(root).child("a").name(), "");
}

TEST(DataChunkTest, StaysInsideDamagedBytes) {
    const std::string first = head(3, 0, 1) + "aabc";
    const std::string form = head(1, 2, 0) + "!" + first + head(0, 1, 1) + "b" + head(0, 0, 0);
    ASSERT_EQ(flat(DataChunk(form.data(), form.size())), form);
    for (std::size_t cut = 0; cut < form.size(); ++cut) {
        const std::string part = form.substr(0, cut); // a heap block of its own, with guards
        DataChunk chunk("before", "x", 1);
        EXPECT_EQ(chunk.parse(part.data(), part.size()), nullptr) << cut;
        // The head asks for at least the size of two children.
        const bool hasHead = cut >= 13 + 2 * 12;
        EXPECT_EQ(chunk.name(), hasHead ? "" : "before") << cut;
        EXPECT_EQ(chunk.hasChild("a"), hasHead) << cut;
        EXPECT_FALSE(chunk.hasChild("b")) << cut;
    }
    const std::string bad[] = {
        head(0xFFFFFFFF, 0, 0), head(0, 0xFFFFFFFF, 0), head(0, 0, 0xFFFFFFFF),
        head(0x7FFFFFFF, 0, 0), head(0, 0x7FFFFFFF, 0), head(0, 0, 257) + std::string(300, 'n'),
    };
    for (const std::string& damaged : bad)
        EXPECT_EQ(DataChunk().parse(damaged.data(), damaged.size()), nullptr);
    EXPECT_EQ(DataChunk().parse(nullptr, 100), nullptr);
}

TEST(DataChunkTest, WritesNothingThatItWouldNotRead) {
    DataChunk chunk(std::string(256, 'n'), "", 0);
    const std::string named = flat(chunk);
    EXPECT_EQ(DataChunk(named.data(), named.size()).name(), std::string(256, 'n'));
    chunk.setName(std::string(257, 'n'));
    EXPECT_EQ(flat(chunk), "none");

    for (const std::size_t levels : {DataChunk::kMaxDepth, DataChunk::kMaxDepth + 1}) {
        DataChunk nested;
        std::string form = head(0, 0, 0);
        for (std::size_t level = 1; level < levels; ++level) {
            DataChunk outer;
            outer.addChild(nested);
            nested = outer;
            form = head(0, 1, 0) + form;
        }
        const bool fits = levels == DataChunk::kMaxDepth;
        EXPECT_EQ(flat(nested), fits ? form : "none");
        EXPECT_EQ(DataChunk().parse(form.data(), form.size()) != nullptr, fits);
    }
}

TEST(PackedTagTest, PacksATreeAndUnpacksIt) {
    const Tag tree("<MVR_Plugin version=\"2.5\"><name>A &#38; &#228;</name><empty/></MVR_Plugin>");
    const Tag packed = packTag(tree, "MVR_Plugin");
    EXPECT_EQ(packed.attribute("compressed"), "1");
    ASSERT_EQ(packed.childCount(), 1);
    const std::string text(Base64Buffer(packed.value()).bytes().decompress().view());
    EXPECT_EQ(text, tree.toText("", "", "") + '\0');
    Tag restored = packed;
    EXPECT_TRUE(unpackTag(restored));
    EXPECT_EQ(restored, tree);
    // Text packed without compression and without its zero byte.
    Tag plain("<a compressed=\"1\">" + encoded("<b/>") + "</a>");
    EXPECT_TRUE(unpackTag(plain));
    EXPECT_EQ(plain, Tag("<b/>"));

    for (const char* same : {"<a compressed=\"0\">YWJj</a>", "<a>YWJj</a>", "<a Compressed=\"1\"/>",
                             "<a compressed=\" 1\">YWJj</a>"}) {
        Tag tag{std::string(same)};
        EXPECT_TRUE(unpackTag(tag)) << same;
        EXPECT_EQ(tag, Tag(same));
    }
    const std::string inner = "<a><a compressed=\"1\">PGEvPg==</a></a>";
    struct {
        std::string text;
        const char* left; // what is whole of it; null: nothing
    } const damagedCases[] = {
        {"PGE", nullptr},
        {"PG E", nullptr},
        {encoded("text"), nullptr},
        {encoded("<a x=\"1\"><b/><c><d/>"), "<a x=\"1\"><b/></a>"},
        {encoded("<a><b/></c>"), "<a><b/></a>"},
        {packed.value().substr(0, packed.value().size() / 4 * 4 - 12),
         "<MVR_Plugin version=\"2.5\"><name>A &#38; &#228;</name></MVR_Plugin>"}};
    for (const auto& each : damagedCases) {
        Tag tag = Tag::element("a", each.text);
        tag.attributeRef("compressed") = "1";
        const Tag left = each.left != nullptr ? Tag(each.left) : tag;
        EXPECT_FALSE(unpackTag(tag)) << each.text;
        EXPECT_EQ(tag, left) << each.text;
    }
    // A limit counts the text of each level.
    for (const std::size_t limit : {inner.size(), inner.size() + 1, inner.size() + 5}) {
        Tag tag = packTag(Tag(inner), "a"); // with a zero byte at its end
        std::size_t left = limit;
        const bool fits = limit > inner.size();
        EXPECT_EQ(unpackTag(tag, left), fits);
        EXPECT_EQ(left, fits ? limit - inner.size() - 1 : limit);
        EXPECT_EQ(fits && unpackTag(tag.child(0), left), limit == inner.size() + 5);
    }
}

} // namespace
} // namespace MVR
