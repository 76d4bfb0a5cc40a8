#include "data/sdk/tag.h"

#include "core/base/sdk/log.h"
#include "platform/temporary_folder.h"

#include <gtest/gtest.h>

#include <clocale>
#include <limits>
#include <set>
#include <sstream>

namespace MVR {
namespace {

const std::string kSample = "<?xml version=\"1.0\"?>\n<MVR>\n\t<MVR_Plugin name=\"Free Camera\">\n"
                            "\t\t<id>34</id>\n\t\t<note q='say \"x\"' r=\"&#34;'&#10;\">a > b&#38;c"
                            "</note>\n\t\t<empty/>\n\t</MVR_Plugin>\n</MVR>";

// A text, its code, and how the tree is written, without line ends and indentation.
const struct {
    std::string text;
    int code;
    std::string written;
} kDialect[] = {
    {"", 2, ""},
    {" \t\r\n", 2, ""},
    {"text", 2, ""},
    {"</a>", 2, ""},
    {"<!-- x --><a/>", 2, ""},
    {"<!DOCTYPE a><a/>", 2, ""},
    {"<a><b/></a> </c><<any & rubbish", 0, "<a><b/></a>"},
    {"<?xml version=\"1.0\"?>", 5, ""},
    {"<?xml version=\"1.0\"?>\n<a/>", 0, "<a/>"},
    {"<?xml?><!-- x --><a/>", 0, "<!-- -- x ---- >"},
    {"<?xml?>text<a/>", 0, "text"},
    {"<?xml?></a>", 2, ""},
    {"<a>", 3, "<a/>"},
    {"<a", 3, "<a/>"},
    {"<a><b>", 3, "<a/>"},
    {"<a>  ", 3, "<a>  </a>"},
    {"<a><x/><b><y/></a>", 4, "<a><x/></a>"},
    {"<a><b></a>", 4, "<a/>"},
    {"<a></a >", 4, "<a/>"},
    {"<a></A>", 4, "<a/>"},
    {"<a&#65;></aA>", 0, "<aA/>"},
    {"<a&#65;></a&#65;>", 4, "<aA/>"},
    {"<a><a/></a>", 0, "<a><a/></a>"},
    {"<a>a</a>", 0, "<a>a</a>"},
    {"<a>  x  </a>", 0, "<a>  x  </a>"},
    {"<a>   </a>", 0, "<a/>"},
    {"<a><></a>", 0, "<a/>"},
    {"<a>\n <b/> y <c/>\n</a>", 0, "<a><b/> y <c/></a>"},
    {"<a></><//></a>", 0, "<a/>"},
    {"<a></a/></a>", 0, "<a><a/></a>"},
    {"<a>x<!b/></a>", 0, "<a>x<!-- b/-- ></a>"},
    {"<a>< b/></a>", 0, "<a/>"},
    {"<a b=\"c\" >", 5, "<a b=\"c\"/>"},
    {"<a />", 5, "<a/>"},
    {"<a b />", 5, "<a/>"},
    {"<a b =\"c\"/>", 5, "<a/>"},
    {"<a b= \"c\"/>", 5, "<a/>"},
    {"<a b=c/>", 5, "<a/>"},
    {"<a b=\"c/>", 5, "<a/>"},
    {"<a b=", 5, "<a/>"},
    {"<a b=\"x>y\"/>", 5, "<a/>"},
    {"<a><x/><b c/><y/></a>", 5, "<a><x/></a>"},
    {"<a d=\"1\"b='2'c=\"'\"/>", 0, "<a b=\"2\" c=\"'\" d=\"1\"/>"},
    {"<a b=\"1\" c=\"3\" b=\"2\"/>", 0, "<a b=\"2\" c=\"3\"/>"},
    {"<a b=\"1\"?c/>", 0, "<a b=\"1\"/>"},
    {"<a>x > y</a>", 0, "<a>x > y</a>"},
    {"<a>&amp; & &#38; &#x26;&#60;</a>", 0, "<a>&#38;amp; &#38; &#38; &#38;&#60;</a>"},
    {"<a>&#x41;&#65;&#X41;&#321;&#6a;</a>", 0, "<a>AA&#0;41;A&#6;</a>"},
    {"<a>&#;&#x;&#65</a>", 0, "<a>&#0;&#0;A</a>"},
    {"<a b=\"&#x3e;&#34;\"/>", 0, "<a b='>\"'/>"},
    {"<a b=\"&#34;&#39;&#10;\"/>", 0, "<a b=\"&#34;'&#10;\"/>"},
    {"<a>\xC3\xA4\t\x7F</a>", 0, "<a>&#195;&#164;&#9;&#127;</a>"},
    {std::string("<a>x</a>\0<b>", 12), 0, "<a>x</a>"},
    {std::string("<a>x\0</a>", 9), 3, "<a>x</a>"},
    {"<a><b c=\"&", 5, "<a/>"},
};

TEST(TagTest, ParsesTheDialect) {
    for (const auto& c : kDialect) {
        Tag tag;
        EXPECT_EQ(tag.parse(c.text), c.code) << c.text;
        EXPECT_EQ(tag.toText("", "", ""), c.written) << c.text;
        EXPECT_EQ(Tag(c.text), tag) << c.text;
    }
}

TEST(TagTest, TextsOfEachLengthComeBack) {
    for (std::size_t size = 0; size <= 40; ++size) {
        for (std::size_t place = 0; place <= size; ++place) {
            std::string value(size, 'v');
            value.insert(place, "&");
            Tag tag = Tag::element(std::string(size + 1, 'n'), value);
            tag.attributeRef(std::string(size, 'k')) = value;
            tag.attributeRef(value) = std::string(place, '\'');
            const std::string text = tag.toText("\n", "\t", std::string(size, ' '));
            EXPECT_EQ(Tag(text), tag) << text;
        }
    }
}

TEST(TagTest, TellsWhereAFaultIs) {
    struct {
        const char* text;
        std::int32_t line, column;
        const char* words;
    } const cases[] = {
        {"", 1, 1, "no element where one was expected"},
        {"\n text", 1, 1, "no element where one was expected"},
        {"<a>\r\n\t<b>\n</b>\n <c><d/>", 4, 3, "an element isn't closed"},
        {"<a>\n<b>\n  </a>", 3, 5, "a close tag of another element"},
        {"<a\n  b='1'\n  c=2>", 3, 3, "a fault in an attribute"},
        {"<?xml version='1.0'?>\n</a>", 2, 3, "no element where one was expected"},
    };
    for (const auto& c : cases) {
        Tag tag;
        Tag::Place fault;
        EXPECT_STREQ(Tag::describeFault(tag.parse(c.text, fault)), c.words) << c.text;
        EXPECT_EQ(fault.line, c.line) << c.text;
        EXPECT_EQ(fault.column, c.column) << c.text;
    }
}

TEST(TagTest, SurvivesACutAtEveryByte) {
    // Complete without its last byte, and with the line end after the header as its root.
    const std::set<std::size_t> whole{22, kSample.size() - 1};
    for (std::size_t size = 0; size < kSample.size(); ++size) {
        Tag tag;
        EXPECT_EQ(tag.parse(kSample.substr(0, size)) == 0, whole.count(size) > 0) << size;
        Tag again;
        static_cast<void>(again.parse(kSample.substr(size)));
    }
}

TEST(TagTest, WritesEachKind) {
    Tag tag;
    ASSERT_EQ(tag.parse(kSample), 0);
    EXPECT_EQ("<?xml version=\"1.0\"?>\n" + tag.toText("\n", "\t", ""), kSample);
    EXPECT_EQ(tag.child(0).child("id").toText("|", "--", "++"), "++<id>34</id>");

    Tag inlined = Tag::element("a", "x");
    inlined.addChild(Tag::textNode("y"));
    inlined.addChild(Tag::element("b"));
    inlined.addChild(Tag::textNode("z"));
    EXPECT_EQ(inlined.toText("|", "-", "+"), "+<a>x y+-<b/>z</a>");
    Tag block = Tag::element("a");
    block.addChild(Tag("<?x?><!c>"));
    block.addChild(Tag::textNode("t"));
    Tag unread;
    unread.setName("n");
    block.addChild(unread);
    EXPECT_EQ(block.toText("|", "-", "+"), "+<a>|+-<!-- c-- >|t||+</a>");
    EXPECT_EQ(Tag().toText("|", "-", "+"), "");

    std::string large;
    while (large.size() < 200000)
        large += "line & " + std::to_string(large.size()) + "\n";
    Tag texts = Tag::element("a", large);
    texts.addChild(texts);
    EXPECT_EQ(Tag(texts.toText("", "", "")), texts);
}

TEST(TagTest, NumbersHaveSixDigitsWhateverTheLocale) {
    const char* german = std::setlocale(LC_ALL, "de_DE.UTF-8");
    EXPECT_EQ(Tag::element("a", 1234567.0).value(), "1.23457e+06");
    EXPECT_EQ(Tag::element("a", 0.1f).value(), "0.1");
    EXPECT_EQ(Tag::textNode(-2).name(), "-2");
    EXPECT_EQ(Tag::textNode(std::numeric_limits<std::uint64_t>::max()).name(),
              "18446744073709551615");
    EXPECT_EQ(Tag::element("a", std::array<double, 3>{1, -0.5, 1e-7}).value(), "1,-0.5,1e-07");

    const struct {
        const char* text;
        double real;
        int integer;
    } cases[] = {{"1.5", 1.5, 1},  {"  -2e2x", -200, -2},
                 {"+3,5", 3, 3},   {"", 77, 77},
                 {"x", 77, 77},    {"nan", 77, 77},
                 {"1e999", 77, 1}, {"-.5", -.5, 77},
                 {"0x10", 0, 0},   {"4294967296", 4294967296.0, 77}};
    for (const auto& c : cases) {
        double real = 77;
        int integer = 77;
        Tag::textNode(c.text).as(real);
        Tag::textNode(c.text).as<int>(integer);
        EXPECT_EQ(real, c.real) << c.text;
        EXPECT_EQ(integer, c.integer) << c.text;
    }
    if (german)
        std::setlocale(LC_ALL, "C");
}

TEST(TagTest, FindsAndChangesWhatIsThere) {
    Tag tag("<a x=\"1\"><b>1</b>t<b>2</b><t/></a>");
    const Tag& readOnly = tag;
    EXPECT_EQ(tag.childCount("b"), 2);
    EXPECT_EQ(tag.childCount("t"), 2);
    EXPECT_EQ(readOnly.child("b", 1).value(), "2");
    EXPECT_EQ(tag.value(), "t");
    for (const Tag* missing : std::initializer_list<const Tag*>{
             &readOnly.child(4), &readOnly.child(-1), &tag.child("b", 2), &readOnly.child("b", -1),
             &tag.child("x").child("y").child(0)}) {
        EXPECT_TRUE(missing->isEmpty());
        EXPECT_EQ(missing->value() + missing->attribute("x"), "");
    }
    EXPECT_EQ(tag.attribute("y"), "");
    EXPECT_EQ(tag.toText("", "", ""), "<a x=\"1\"><b>1</b>t<b>2</b><t/></a>");
    for (const char* key : {"m", "z", "c", "x", "a"})
        tag.attributeRef(key) += key;
    tag.child(0).child(0).setName("9");
    EXPECT_FALSE(tag.removeChild(Tag::element("c")));
    EXPECT_TRUE(tag.removeChild(Tag::element("b", "any")));
    EXPECT_TRUE(tag.removeChild(tag.child(2)));
    EXPECT_EQ(tag.toText("", "", ""), "<a a=\"a\" c=\"c\" m=\"m\" x=\"1x\" z=\"z\">t<b>2</b></a>");
    EXPECT_FALSE(tag.child("b").child(0).removeChild(Tag()));
    EXPECT_EQ(&tag.addChild(Tag::element("")), &tag);
    tag.clear();
    EXPECT_EQ(tag.kind(), Tag::Element);
    EXPECT_EQ(tag, Tag::element(""));
}

TEST(TagTest, CopiesAreDeepAndReferencesStay) {
    Tag tag = Tag::element("root");
    Tag& first = tag.addChild(Tag::element("child", 0));
    for (int i = 1; i < 100; ++i)
        tag.addChild(Tag::element("child", i));
    first.attributeRef("k") = "v";
    const Tag copy = tag;
    EXPECT_EQ(copy, tag);
    first.child(0).setName("other");
    EXPECT_EQ(copy.child(0).attribute("k") + copy.child(0).value(), "v0");
    EXPECT_NE(copy, tag);
    Tag moved = std::move(tag);
    EXPECT_EQ(&moved.child(0), &first);
    EXPECT_EQ(moved.child("child", 99).value(), "99");
    for (int left = 100; left > 0; --left)
        ASSERT_TRUE(moved.removeChild(moved.child(left / 2)));
    EXPECT_EQ(moved.childCount(), 0);

    // A tree and its own parts in one operation.
    Tag self("<a><b><c>text</c></b></a>");
    self.addChild(self);
    self.child(0).addChild(self.child(1));
    EXPECT_EQ(self.toText("", "", ""), "<a><b><c>text</c><a><b><c>text</c></b></a></b>"
                                       "<a><b><c>text</c></b></a></a>");
    self = std::move(self.child(1));
    self = self.child(0);
    EXPECT_EQ(self, Tag("<b><c>text</c></b>"));
    self.child(0).child(0).setName("<d e=\"f\"/>");
    EXPECT_EQ(self.parse(self.child(0).value()), 0);
    EXPECT_EQ(self, Tag("<d e=\"f\"/>"));
}

TEST(TagTest, FilesAreReadByLineAndReplacedWhole) {
    TemporaryFolder folder;
    const std::string path = folder.path + "tree.xml";
    Tag tag("<kept/>");
    EXPECT_EQ(tag.load(path), 1);
    EXPECT_TRUE(tag.hasName("kept"));
    const std::string text = "<a>ab\ncd\r\ne\rf\r\n\n</a>\r";
    EXPECT_EQ(tag.load(folder.add("tree.xml", text)), 0);
    EXPECT_EQ(tag.value(), "abcde\rf");
    std::istringstream stream(text);
    Tag read;
    EXPECT_EQ(read.read(stream), 0);
    EXPECT_EQ(read, tag);

    Tag sample(kSample);
    sample.child(0).addChild(Tag::element("all"));
    for (int byte = 1; byte < 256; ++byte)
        sample.child(0).child("all").attributeRef("k") += static_cast<char>(byte == '>' ? 1 : byte);
    EXPECT_TRUE(sample.save(path));
    EXPECT_EQ(tag.load(path), 0);
    EXPECT_EQ(tag, sample);
    EXPECT_FALSE(sample.save(folder.path + "missing/tree.xml"));

    // A file of the first version, which must stay readable.
    EXPECT_EQ(tag.load(MIRVANE_TEST_FILES "tag_1.xml"), 0);
    EXPECT_EQ(tag, Tag(kSample));
}

TEST(TagTest, DeepAndWideTreesNeedNoStack) {
    const auto nested = [](int levels) {
        std::string text;
        for (int i = 0; i < levels; ++i)
            text += "<a>";
        for (int i = 0; i < levels; ++i)
            text += "</a>";
        return text;
    };
    Tag tag;
    EXPECT_EQ(tag.parse(nested(Tag::kMaxDepth)), 0);
    const std::size_t logged = Log::getText().size();
    EXPECT_EQ(tag.parse(nested(1000000)), 6);
    EXPECT_EQ(tag, Tag::element("a"));
    EXPECT_NE(Log::getText().find("Too many nested elements", logged), std::string::npos);

    Tag deep = Tag::element("a");
    Tag* last = &deep;
    for (int i = 1; i < 300000; ++i)
        last = &last->addChild(Tag::element("a"));
    Tag copy = deep;
    EXPECT_EQ(copy, deep);
    EXPECT_EQ(copy.toText("", "", "").size(), 299999u * 7 + 4);
    EXPECT_FALSE(copy.save("too_deep.xml"));
    last->addChild(Tag::textNode("x"));
    EXPECT_NE(copy, deep);
}

} // namespace
} // namespace MVR
