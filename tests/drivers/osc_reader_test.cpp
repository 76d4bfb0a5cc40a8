#include "osc_reader.h"

#include "udp_sender.h"

#include <gtest/gtest.h>

#include <cmath>
#include <cstring>
#include <limits>
#include <memory>

namespace {

// Returns the values of a packet, such as "/a 0 1.5, /a 1 2", or "refused" if it is broken. The
// bytes are in memory of their exact size, so that a sanitizer sees each read beyond them.
std::string values(const std::string& packet) {
    const std::unique_ptr<char[]> exact(new char[packet.size()]);
    std::memcpy(exact.get(), packet.data(), packet.size());
    std::vector<OscValue> found{{"/before", 0, 1.0}};
    if (!readOscPacket(exact.get(), packet.size(), found))
        return found.size() == 1 ? "refused" : "refused, but with values";
    std::string text;
    for (std::size_t i = 1; i < found.size(); ++i) {
        text += (i > 1 ? ", " : "") + std::string(found[i].address) + " " +
                std::to_string(found[i].index) + " " + std::to_string(found[i].value).substr(0, 5);
    }
    return text;
}

std::string bytes(const char* text, std::size_t size) {
    return std::string(text, size);
}

TEST(OscReaderTest, ReadsNumbersOfAllTypes) {
    EXPECT_EQ(
        values(oscMessage("/a/b", "ifhdTFsNd", 7, 1.5f, std::int64_t(1) << 40, -0.25, "text", 9.0)),
        "/a/b 0 7.000, /a/b 1 1.500, /a/b 2 10995, /a/b 3 -0.25, /a/b 4 1.000, "
        "/a/b 5 0.000, /a/b 8 9.000");
    EXPECT_EQ(values(oscMessage("/a", "")), "");
    const double nan = std::nan(""), infinite = std::numeric_limits<double>::infinity();
    EXPECT_EQ(values(oscMessage("/a", "dddf", nan, infinite, 1.0, -infinite)), "/a 2 1.000");

    std::string many = oscMessage("/m", std::string(100, 'T'));
    EXPECT_TRUE(values(many).ends_with("/m 63 1.000"));
    EXPECT_EQ(values(oscMessage("/" + std::string(254, 'x'), "T")).size(), 255u + 8);
}

TEST(OscReaderTest, OpensBundlesAtOnceAndToALimit) {
    const std::string a = oscMessage("/a", "i", 1), b = oscMessage("/b", "i", 2);
    EXPECT_EQ(values(oscBundle({})), "");
    EXPECT_EQ(values(oscBundle({a, oscBundle({b, oscBundle({a})}), b})),
              "/a 0 1.000, /b 0 2.000, /a 0 1.000, /b 0 2.000");
    std::string deep = a;
    for (int i = 0; i < kMaxOscBundleDepth; ++i)
        deep = oscBundle({deep});
    EXPECT_EQ(values(deep), "/a 0 1.000");
    EXPECT_EQ(values(oscBundle({deep})), "refused");
    EXPECT_EQ(values(oscBundle({a, bytes("/b\0\0,x\0\0", 8)})), "refused") << "as a whole";
}

TEST(OscReaderTest, RefusesWhatIsBroken) {
    const std::string whole =
        oscBundle({oscMessage("/a", "sd", "word", 1.0), oscMessage("/b", "i", 2)});
    const std::string first = oscBundle({oscMessage("/a", "sd", "word", 1.0)});
    for (std::size_t size = 0; size < whole.size(); ++size) {
        // A bundle may end after its head and after each element.
        const bool isBundle = size == 16 || size == first.size();
        EXPECT_EQ(values(whole.substr(0, size)) == "refused", !isBundle) << size;
    }
    const std::string cases[] = {
        "",
        bytes("/a\0\0", 4),
        bytes("/a\0\0i\0\0\0\0\0\0\1", 12),
        bytes("/a\0\0,i\0\0", 8),
        bytes("/a\0\0,i\0\0\0\0\0\1\0\0\0\0", 16),
        bytes("/a\0\0,b\0\0\xff\xff\xff\xff", 12),
        bytes("/a\0\0,b\0\0\x7f\xff\xff\xfd\0\0\0\0", 16),
        bytes("/a\0\0,[i]\0\0\0\0\0\0\0\1", 16),
        bytes("/a\0\0,\xff\0\0", 8),
        bytes("//\0\0,s\0\0abcd", 12),
        bytes("a\0\0\0,T\0\0", 8),
        bytes("/\0\0\0,T\0\0", 8),
        bytes("/*\0\0,T\0\0", 8),
        bytes("/ \0\0,T\0\0", 8),
        bytes("/\x80\0\0,T\0\0", 8),
        oscMessage("/" + std::string(255, 'x'), "T"),
        bytes("#bundle\0\0\0\0\0\0\0\0\1\0\0\0\0", 20),
        bytes("#bundle\0\0\0\0\0\0\0\0\1\xff\xff\xff\xff", 20),
        bytes("#bundle\0\0\0\0\0\0\0\0\1\0\0\0\5/a\0\0,", 25),
        bytes("#bundlf\0,T\0\0", 12),
    };
    for (const std::string& packet : cases)
        EXPECT_EQ(values(packet), "refused") << testing::PrintToString(packet);
}

} // namespace
