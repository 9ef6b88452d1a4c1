#include "files/KvAnsi.h"

#include <set>

#include <iconv.h>

#include "FilesTestUtil.h"

using namespace kv;
using kvtest::ToHex;

namespace {

// glibc's own CP1252 table is the reference for the 251 defined bytes.
std::string IconvByte(unsigned char b) {
    iconv_t cd = iconv_open("UTF-8", "CP1252");
    if (cd == iconv_t(-1)) return "<no iconv>";
    char in[1] = {char(b)};
    char out[8];
    char* ip = in;
    char* op = out;
    std::size_t il = 1, ol = sizeof out;
    const std::size_t r = iconv(cd, &ip, &il, &op, &ol);
    iconv_close(cd);
    return r == std::size_t(-1) ? "<undefined>" : std::string(out, std::size_t(op - out));
}

TEST(files_Ansi, EveryByteMatchesTheCodePageAndRoundTrips) {
    const std::set<int> holes = {0x81, 0x8D, 0x8F, 0x90, 0x9D};
    std::string all;
    for (int b = 0; b < 256; ++b) {
        const std::string one(1, char(b));
        const std::string utf8 = AnsiToUtf8(one);
        if (holes.count(b)) {
            std::string expected;
            AppendUtf8(expected, char32_t(b)); // the C1 control of the same value
            EXPECT_EQ(utf8, expected) << "byte " << b;
        } else {
            EXPECT_EQ(utf8, IconvByte(std::uint8_t(b))) << "byte " << b;
        }
        EXPECT_EQ(Utf8ToAnsi(utf8), one) << "byte " << b;
        EXPECT_EQ(CodePointToAnsi(AnsiToCodePoint(std::uint8_t(b))), b);
        all += one;
    }
    EXPECT_EQ(Utf8ToAnsi(AnsiToUtf8(all)), all);
}

TEST(files_Ansi, Utf8ToAnsiTable) {
    struct Case {
        const char* utf8;
        std::string ansi;
    };
    const Case cases[] = {
        {"", ""},
        {"plain ascii", "plain ascii"},
        {"\xE2\x82\xAC 5", "\x80 5"},                     // euro sign
        {"Zo\xC3\xAB \xC5\x92uvre", "Zo\xEB \x8Cuvre"},    // e diaeresis, OE ligature
        {"\xC2\x81\xC2\x8D\xC2\x8F\xC2\x90\xC2\x9D", "\x81\x8D\x8F\x90\x9D"},
        {"\xC2\x80", "?"},                                // C1 control that 1252 lacks
        {"\xC4\x80", "?"},                                // A macron
        {"\xE4\xB8\xAD\xE6\x96\x87", "??"},               // two CJK characters
        {"\xF0\x9F\x98\x80!", "?!"},                      // astral plane
        {"a\xFF" "b", "a?b"},                              // never valid in UTF-8
        {"\xE2\x82", "??"},                               // cut short
        {"\xC0\x80", "??"},                               // overlong NUL
        {"\xED\xA0\x80", "???"},                          // encoded surrogate
        {"\xF4\x90\x80\x80", "????"},                     // above U+10FFFF
        {"x\x80y", "x?y"},                                // stray continuation byte
    };
    for (const auto& c : cases) EXPECT_EQ(Utf8ToAnsi(c.utf8), c.ansi) << ToHex(std::string(c.utf8));
}

TEST(files_Ansi, Utf8LengthCountsCharactersAndBadBytes) {
    const std::pair<const char*, std::size_t> cases[] = {
        {"", 0}, {"abc", 3}, {"\xE2\x82\xAC", 1}, {"\xC3\xA9\xC3\xA9", 2}, {"\xF0\x9F\x98\x80", 1}, {"\xE2\x82", 2},
        {"a\xFF" "b", 3},
    };
    for (const auto& [s, n] : cases) EXPECT_EQ(Utf8Length(s), n) << ToHex(std::string(s));
}

TEST(files_Ansi, NonAsciiAtEveryOffsetOfTheFastPath) {
    for (std::size_t at = 0; at < 20; ++at) {
        std::string ansi(20, 'x');
        ansi[at] = '\x80';
        std::string utf8(20, 'x');
        utf8.replace(at, 1, "\xE2\x82\xAC");
        EXPECT_EQ(AnsiToUtf8(ansi), utf8) << at;
        EXPECT_EQ(Utf8ToAnsi(utf8), ansi) << at;
        EXPECT_EQ(Utf8Length(utf8), 20u);
    }
}

TEST(files_Ansi, AsciiPrefixStopsAtTheFirstHighOrZeroByte) {
    for (std::size_t len = 0; len <= 20; ++len) {
        const std::string plain(len, 'a');
        EXPECT_EQ(AsciiPrefixLength(plain.data(), len, false), len);
        EXPECT_EQ(AsciiPrefixLength(plain.data(), len, true), len);
        for (std::size_t at = 0; at < len; ++at) {
            std::string high = plain, zero = plain;
            high[at] = '\xC3';
            zero[at] = '\0';
            EXPECT_EQ(AsciiPrefixLength(high.data(), len, false), at) << len << "/" << at;
            EXPECT_EQ(AsciiPrefixLength(high.data(), len, true), at) << len << "/" << at;
            EXPECT_EQ(AsciiPrefixLength(zero.data(), len, false), len) << len << "/" << at;
            EXPECT_EQ(AsciiPrefixLength(zero.data(), len, true), at) << len << "/" << at;
        }
    }
}

} // namespace
