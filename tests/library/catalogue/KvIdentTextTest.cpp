#include <climits>
#include <cstdint>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "KvErrors.h"
#include "catalogue/KvIdentText.h"

namespace {

using namespace std::string_literals;

struct IdentCase {
    std::string ansi;
    std::int32_t value;
};

TEST(CatalogueIdentText, ReadsBase224LeastSignificantFirst) {
    const std::vector<IdentCase> cases = {
        {"", 0},
        {" ", 0},               // a zero digit
        {"!", 1},
        {"\xFF", 223},          // the largest digit, a byte above 0x7F
        {"\x80", 96},
        {" !", 224},            // second digit weighs 224
        {"!!", 225},
        {"\x1F", -1},           // a byte below 32 is a negative digit
        {"\xFF\xFF\xFF\xFF\xFF", 1308622847},  // 224^5 - 1 wraps in 32 bits
        {"?)>\xBE!", -1},
        {"\x9F$/\xDF", INT_MAX},
        {"\xA0$/\xDF", INT_MIN},
    };
    for (const auto& c : cases) EXPECT_EQ(kv::IdentTextToInt(c.ansi), c.value) << "text of " << c.ansi.size() << " bytes";
}

TEST(CatalogueIdentText, WritesTheShortestTextThatReadsBack) {
    const std::vector<IdentCase> cases = {
        {"", 0}, {"!", 1}, {"\xFF", 223}, {" !", 224}, {"?)>\xBE!", -1}, {"\x9F$/\xDF", INT_MAX}, {"\xA0$/\xDF", INT_MIN},
    };
    for (const auto& c : cases) EXPECT_EQ(kv::IntToIdentText(c.value), c.ansi) << c.value;
    for (std::int32_t v : {2, 100, 50175, 50176, 11239423, 123456789, -2, -123456789})
        EXPECT_EQ(kv::IdentTextToInt(kv::IntToIdentText(v)), v) << v;
}

TEST(CatalogueIdentText, Utf8FormsGoThroughWindows1252) {
    EXPECT_EQ(kv::IdentUtf8ToInt("\u20AC"), 96);   // euro sign is byte 0x80
    EXPECT_EQ(kv::IdentUtf8ToInt("\u00FF"), 223);
    EXPECT_EQ(kv::IdentUtf8ToInt("\u0081"), 97);   // an undefined byte of 1252 keeps its value
    EXPECT_EQ(kv::IntToIdentUtf8(96), "\u20AC");
    EXPECT_EQ(kv::IdentUtf8ToInt(kv::IntToIdentUtf8(-1)), -1);
}

TEST(CatalogueIdentText, SubstituteIsZlibCrc32AsSigned) {
    const std::vector<IdentCase> cases = {
        {"", 0},
        {"123456789", -873187034},  // 0xCBF43926
        {"The quick brown fox jumps over the lazy dog", 1095738169},
        {"\xC3\xA9", 235179326},    // UTF-8 bytes of "é", not its 1252 byte
        {"/data/md_db1/Models.dat", -973406658},
        {"Solution 1", -358601156},
    };
    for (const auto& c : cases) EXPECT_EQ(kv::SubstituteID(c.ansi), c.value) << c.ansi;
}

TEST(CatalogueIdentText, SplitsAtU0001AndMissingTokensAreEmpty) {
    struct Case {
        std::string text;
        std::vector<std::string> tokens;
    };
    const std::vector<Case> cases = {
        {"", {""}},
        {"a", {"a"}},
        {"a\x01", {"a", ""}},
        {"\x01\x01", {"", "", ""}},
        {"name\x01!\x01" "7", {"name", "!", "7"}},
    };
    for (const auto& c : cases) {
        const auto t = kv::SplitTokens(c.text);
        ASSERT_EQ(t.size(), c.tokens.size()) << c.text;
        for (std::size_t i = 0; i < t.size(); ++i) EXPECT_EQ(t[i], c.tokens[i]);
        EXPECT_EQ(kv::TokenAt(t, t.size()), "");
        EXPECT_EQ(kv::TokenAt(t, 99), "");
    }
}

TEST(CatalogueIdentText, JoinRefusesATokenHoldingTheSeparator) {
    EXPECT_EQ(kv::JoinTokens(std::vector<std::string>{"a", "", "b"}), "a\x01\x01" "b");
    EXPECT_THROW(kv::JoinTokens(std::vector<std::string>{"a", "b\x01" "c"}), kv::EKvError);
}

} // namespace
