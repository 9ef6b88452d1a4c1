#include <cstring>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "CatalogueTestUtil.h"
#include "KvErrors.h"
#include "catalogue/KvFnModels.h"
#include "catalogue/KvIdentText.h"
#include "files/KvFnBufFile.h"

namespace {

using namespace std::string_literals;
using cattest::Bytes;

// One 580-byte record built by hand at the documented offsets.
struct RawRecord {
    std::string tokens;
    int tokensLength = -1;  // the length byte; -1: the text's length
    std::string name2;
    std::int32_t folderNo = 0, key1 = 0, key3 = 0, int488 = 0, int492 = 0;
    std::uint8_t key2 = 0, byte476 = 0;
    std::uint32_t word0 = 0, word1 = 0;
    std::uint8_t blockFill = 0;

    std::vector<std::uint8_t> Bytes() const {
        std::vector<std::uint8_t> r(580, 0xEE);  // alignment bytes hold junk on purpose
        auto put = [&](std::size_t off, std::uint32_t v) {
            for (int i = 0; i < 4; ++i) r[off + std::size_t(i)] = std::uint8_t(v >> (8 * i));
        };
        std::fill(r.begin(), r.begin() + 457, 0);
        r[0] = std::uint8_t(tokensLength < 0 ? tokens.size() : std::size_t(tokensLength));
        std::memcpy(r.data() + 1, tokens.data(), std::min<std::size_t>(tokens.size(), 200));
        r[201] = std::uint8_t(name2.size());
        std::memcpy(r.data() + 202, name2.data(), std::min<std::size_t>(name2.size(), 255));
        put(460, std::uint32_t(folderNo));
        put(464, std::uint32_t(key1));
        r[468] = key2;
        put(472, std::uint32_t(key3));
        r[476] = byte476;
        put(480, word0);
        put(484, word1);
        put(488, std::uint32_t(int488));
        put(492, std::uint32_t(int492));
        std::fill(r.begin() + 496, r.begin() + 578, blockFill);
        return r;
    }
};

std::vector<std::uint8_t> ListBytes(std::int32_t selected, const std::vector<RawRecord>& records) {
    Bytes b;
    b.I32(selected).I32(std::int32_t(records.size()));
    for (const auto& r : records) {
        const auto bytes = r.Bytes();
        b.b.insert(b.b.end(), bytes.begin(), bytes.end());
    }
    return b.b;
}

kv::TModels ReadList(const std::vector<std::uint8_t>& bytes, std::uint8_t kind) {
    kv::TBufReadFile r = kv::TBufReadFile::FromBytes(bytes, "list.dat");
    kv::TModels m("/base", "Main", "md_db1_X", kv::kDefaultLibrarySettings);
    m.ReadData(r, kind);
    return m;
}

TEST(CatalogueModels, TokensOfTheFirstText) {
    struct Case {
        std::string tokens;
        std::uint8_t kind;
        std::string name;
        std::int32_t id, number3, number4, id2;
    };
    const std::int32_t subB = kv::SubstituteID("Plan B");
    const std::vector<Case> cases = {
        {"Plan A\x01!\x01" "5\x01" "6\x01\"", 0, "Plan A", 1, 5, 6, 2},
        {"Plan A\x01!\x01" "5\x01" "6\x01\"", 1, "Plan A", 1, 5, 6, 0},  // second identifier: kind 0 only
        {"Plan A\x01!\x01" "5\x01" "6\x01\"", 4, "Plan A", 1, 5, 6, 2},  // 4 reads like 0
        {"Plan B", 0, "Plan B", subB, 0, 0, subB},
        {"Plan B\x01 \x01-7\x01" "12", 1, "Plan B", subB, -7, 12, 0},  // " " is the digit 0
        {"Caf\xE9\x01!", 1, "Caf\u00E9", 1, 0, 0, 0},
        {std::string(90, 'n') + "\x01!", 1, std::string(80, 'n'), 1, 0, 0, 0},
        {"Ab\0cd\x01!"s, 1, "Ab", kv::SubstituteID("Ab"), 0, 0, 0},  // text ends at a zero byte
    };
    for (const auto& c : cases) {
        RawRecord r;
        r.tokens = c.tokens;
        const kv::TModels m = ReadList(ListBytes(0, {r}), c.kind);
        ASSERT_EQ(m.Count(), 1);
        const kv::TModel& e = m.Get(0);
        EXPECT_EQ(e.Name, c.name) << c.tokens;
        EXPECT_EQ(e.ID, c.id) << c.tokens;
        EXPECT_EQ(e.Number3, c.number3) << c.tokens;
        EXPECT_EQ(e.Number4, c.number4) << c.tokens;
        EXPECT_EQ(e.ID2, c.id2) << c.tokens << " kind " << int(c.kind);
    }
}

TEST(CatalogueModels, FixedFieldsAtTheirOffsets) {
    RawRecord r;
    r.tokens = "S\x01!";
    r.name2 = "Second name";
    r.folderNo = 3;
    r.key1 = -123456;
    r.key2 = 0xAB;
    r.key3 = 0x01020304;
    r.byte476 = 0x7F;
    r.word0 = 0xDEADBEEF;
    r.word1 = 0x00C0FFEE;
    r.int488 = -2;
    r.int492 = 65537;
    r.blockFill = 0x5A;
    const kv::TModels m = ReadList(ListBytes(0, {r}), 0);
    const kv::TModel& e = m.Get(0);
    EXPECT_EQ(e.Name2, "Second name");
    EXPECT_EQ(e.FolderNo, 3);
    EXPECT_EQ(e.KeyValue1, -123456);
    EXPECT_EQ(e.KeyValue2, 0xAB);
    EXPECT_EQ(e.KeyValue3, 0x01020304);
    EXPECT_EQ(e.Byte476, 0x7F);
    EXPECT_EQ(e.Words480[0], 0xDEADBEEFu);
    EXPECT_EQ(e.Words480[1], 0x00C0FFEEu);
    EXPECT_EQ(e.Int488, -2);
    EXPECT_EQ(e.Int492, 65537);
    for (std::uint8_t b : e.Block) ASSERT_EQ(b, 0x5A);

    // Written back, every field lands at the same offset; alignment becomes 0.
    cattest::TempDir dir;
    const std::string path = dir.Dir() + "list.dat";
    {
        kv::TBufWriteFile w(path);
        m.SaveData(w, 0);
        w.Close();
    }
    auto expected = r.Bytes();
    for (std::size_t off : {457u, 458u, 459u, 469u, 470u, 471u, 477u, 478u, 479u, 578u, 579u}) expected[off] = 0;
    // The first text is rewritten from the fields: name, identifier, 3, 4, identifier 2.
    const std::string tokens = "S\x01!\x01" "0\x01" "0\x01" + kv::IntToIdentText(kv::SubstituteID("S"));
    std::fill(expected.begin(), expected.begin() + 201, 0);
    expected[0] = std::uint8_t(tokens.size());
    std::memcpy(expected.data() + 1, tokens.data(), tokens.size());
    const auto written = cattest::ReadBytes(path);
    ASSERT_EQ(written.size(), 4u + 4u + 580u);  // selected index, count: read without a stored number
    const std::vector<std::uint8_t> record(written.begin() + 8, written.end());
    EXPECT_EQ(record, expected);
}

TEST(CatalogueModels, LengthBytesThatLieStayInsideTheirSlots) {
    RawRecord r;
    r.tokens = std::string(198, 'N') + "\x01!";  // 200 bytes, the identifier last
    r.tokensLength = 255;                         // claims more than the slot holds
    r.name2 = "xyz";
    const kv::TModels m = ReadList(ListBytes(0, {r}), 1);
    // Reading past byte 200 would append the second slot's bytes to the identifier.
    EXPECT_EQ(m.Get(0).ID, 1);
    EXPECT_EQ(m.Get(0).Name, std::string(80, 'N'));
    EXPECT_EQ(m.Get(0).Name2, "xyz");
}

TEST(CatalogueModels, CountMinusOneIsFollowedByTheStoredNumber) {
    RawRecord r;
    r.tokens = "Only\x01!";
    Bytes b;
    b.I32(-4).I32(-1).I32(77).I32(1);
    const auto rec = r.Bytes();
    b.b.insert(b.b.end(), rec.begin(), rec.end());
    b.I32(9);  // what follows the list stays unread
    kv::TBufReadFile reader = kv::TBufReadFile::FromBytes(b.b, "list.dat");
    kv::TModels m("/b", "Main", "f", kv::kDefaultLibrarySettings);
    m.ReadData(reader, 0);
    EXPECT_TRUE(m.HasStoredNumber);
    EXPECT_EQ(m.StoredNumber, 77);
    EXPECT_EQ(m.SelectedIndex, -4);
    ASSERT_EQ(m.Count(), 1);
    EXPECT_EQ(m.Get(0).Name, "Only");
    EXPECT_EQ(reader.Position(), 16 + 580);
}

TEST(CatalogueModels, CountsAreCheckedAgainstTheBytesLeft) {
    struct Case {
        std::vector<std::int32_t> ints;
        std::size_t recordBytes;
        bool throws;
        std::int32_t count;
    };
    const std::vector<Case> cases = {
        {{0, 0x7FFFFFFF}, 580, true, 0},
        {{0, 2}, 580, true, 0},
        {{0, 1}, 579, true, 0},
        {{0, 1}, 580, false, 1},
        {{0, -5}, 0, false, 0},            // a negative count is no records
        {{0, -1, 3, -1}, 0, false, 0},
        {{0, -1, 3, 0x7FFFFFFF}, 0, true, 0},
    };
    for (const auto& c : cases) {
        Bytes b;
        for (auto v : c.ints) b.I32(v);
        b.b.resize(b.b.size() + c.recordBytes, 0);
        kv::TBufReadFile reader = kv::TBufReadFile::FromBytes(b.b, "list.dat");
        kv::TModels m("/b", "Main", "f", kv::kDefaultLibrarySettings);
        if (c.throws) {
            EXPECT_THROW(m.ReadData(reader, 0), kv::EReadError) << c.ints[1];
        } else {
            EXPECT_NO_THROW(m.ReadData(reader, 0));
            EXPECT_EQ(m.Count(), c.count);
        }
    }
}

kv::TModels SampleList(bool enciphered, const kv::TLibrarySettings& settings) {
    kv::TModels m("/data/", "Main", "md_db1_Ann/", settings);
    m.Enciphered = enciphered;
    m.KeySeed = "seed";
    m.ClientName = "Ann";
    m.SelectedIndex = 1;
    m.StoredNumber = 5;
    for (int i = 0; i < 3; ++i) {
        kv::TModel e;
        e.Name = "Retire at " + std::to_string(60 + i) + " \u00E9t\u00E9";
        e.ID = 1000 * (i + 1);
        e.Number3 = i;
        e.Number4 = -i;
        e.ID2 = i == 1 ? -77 : 42;
        e.Name2 = i == 2 ? std::string(157, 'x') : "Second " + std::to_string(i);
        e.FolderNo = i;
        e.KeyValue1 = i + 10;
        e.KeyValue2 = std::uint8_t(i);
        e.KeyValue3 = i * 3;
        e.Byte476 = 9;
        e.Words480 = {1u, 2u};
        e.Int488 = 3;
        e.Int492 = 4;
        e.Block.fill(std::uint8_t(i + 1));
        m.Add(e);
    }
    return m;
}

void ExpectSameEntries(const kv::TModels& a, const kv::TModels& b) {
    ASSERT_EQ(a.Count(), b.Count());
    for (std::int32_t i = 0; i < a.Count(); ++i) EXPECT_TRUE(a.Get(i) == b.Get(i)) << "entry " << i << ": " << b.Get(i).Name;
}

std::vector<std::uint8_t> SaveList(const kv::TModels& m, std::uint8_t kind) {
    cattest::TempDir dir;
    const std::string path = dir.Dir() + "list.dat";
    kv::TBufWriteFile w(path);
    m.SaveData(w, kind);
    w.Close();
    return cattest::ReadBytes(path);
}

TEST(CatalogueModels, RoundTripPlainAndEnciphered) {
    cattest::SettingsGuard key("configured");
    for (bool enciphered : {false, true}) {
        const kv::TModels saved = SampleList(enciphered, key);
        const auto bytes = SaveList(saved, 0);
        kv::TModels read("/data/", "Main", "md_db1_Ann/", key);
        read.Enciphered = enciphered;
        read.KeySeed = "seed";
        read.ClientName = "Ann";
        kv::TBufReadFile r = kv::TBufReadFile::FromBytes(bytes, "list.dat");
        read.ReadData(r, 0);
        EXPECT_TRUE(r.Eof());
        EXPECT_EQ(read.SelectedIndex, 1);
        EXPECT_EQ(read.StoredNumber, 5);
        ExpectSameEntries(saved, read);
        const std::string raw(bytes.begin(), bytes.end());
        EXPECT_EQ(raw.find("Retire") == std::string::npos, enciphered);
        EXPECT_EQ(raw.find("Second 1") == std::string::npos, enciphered);
    }
}

TEST(CatalogueModels, EncipheredListsNeedTheRightKey) {
    const std::vector<std::uint8_t> bytes = SaveList(SampleList(true, cattest::SettingsGuard("right")), 0);
    auto read = [&](const kv::TLibrarySettings& settings) {
        kv::TModels m("/d", "Main", "f", settings);
        m.Enciphered = true;
        m.KeySeed = "seed";
        m.ClientName = "Ann";
        kv::TBufReadFile r = kv::TBufReadFile::FromBytes(bytes, "list.dat");
        m.ReadData(r, 0);
    };
    EXPECT_THROW(read(cattest::SettingsGuard("wrong")), kv::EInvalidData);
    EXPECT_THROW(read(cattest::SettingsGuard()), kv::EKeyMissing);
}

TEST(CatalogueModels, SelectedIndexBelowZeroIsWrittenAsZero) {
    kv::TModels m("/d", "Main", "f", kv::kDefaultLibrarySettings);
    m.SelectedIndex = -1;
    m.HasStoredNumber = false;
    EXPECT_EQ(SaveList(m, 0), (Bytes().I32(0).I32(0).b));
    m.SelectedIndex = 7;
    m.HasStoredNumber = true;
    m.StoredNumber = -9;
    EXPECT_EQ(SaveList(m, 0), (Bytes().I32(7).I32(-1).I32(-9).I32(0).b));
}

TEST(CatalogueModels, ShortEncipheredTextsAlwaysFitTheirSlots) {
    // Short texts get a random padding that, uncapped, would often overflow.
    cattest::SettingsGuard key("k");
    kv::TModels m("/d", "Main", "f", key);
    m.Enciphered = true;
    m.ClientName = "C";
    for (int i = 0; i < 60; ++i) {
        kv::TModel e;
        e.Name = i % 2 ? "" : "abcdefgh";
        e.ID = 1;
        e.Name2 = std::string(std::size_t(i % 11), 'q');
        m.Add(e);
    }
    const auto bytes = SaveList(m, 1);
    kv::TModels read("/d", "Main", "f", key);
    read.Enciphered = true;
    read.ClientName = "C";
    kv::TBufReadFile r = kv::TBufReadFile::FromBytes(bytes, "list.dat");
    read.ReadData(r, 1);
    ExpectSameEntries(m, read);
}

TEST(CatalogueModels, TextsThatCannotBeStoredAreRefused) {
    cattest::SettingsGuard key("k");
    struct Case {
        bool enciphered;
        std::string name;
        std::string name2;
        bool fits;
    };
    const std::vector<Case> cases = {
        {false, "ok", std::string(256, 'x'), false},
        {true, "ok", std::string(157, 'x'), true},
        {true, "ok", std::string(158, 'x'), false},  // its base-64 form passes 255 bytes
        {false, "a\x01" "b", "", false},
        {true, "a|b", "", false},                      // the reader would cut at "|"
    };
    for (const auto& c : cases) {
        kv::TModels m("/d", "Main", "f", key);
        m.Enciphered = c.enciphered;
        m.ClientName = "C";
        kv::TModel e;
        e.Name = c.name;
        e.ID = -2147483647;
        e.Number3 = e.Number4 = -2147483647;
        e.ID2 = -1;
        e.Name2 = c.name2;
        m.Add(e);
        cattest::TempDir dir;
        kv::TBufWriteFile w(dir.Dir() + "l.dat");
        if (c.fits) {
            EXPECT_NO_THROW(m.SaveData(w, 0)) << c.name << " / " << c.name2.size();
        } else {
            EXPECT_THROW(m.SaveData(w, 0), kv::EKvError) << c.name << " / " << c.name2.size();
            EXPECT_EQ(w.Position(), 0) << "something was written before the refusal";
        }
    }
}

TEST(CatalogueModels, SolutionFoldersFollowTheirNumbers) {
    kv::TModels m("/data/dir", "Main", "md_db3_Zoe", kv::kDefaultLibrarySettings);
    kv::TModels n("/data/dir/", "Needs", "md_db3_Zoe/", kv::kDefaultLibrarySettings);
    for (std::int32_t f : {3, 0, 12}) {
        kv::TModel e;
        e.FolderNo = f;
        m.Add(e);
        n.Add(e);
    }
    const std::vector<std::pair<std::string, std::string>> expected = {
        {"Main3", "Needs3"}, {"Main", "Needs"}, {"Main12", "Needs12"}};
    for (std::int32_t i = 0; i < 3; ++i) {
        EXPECT_EQ(m.DirName(i), expected[std::size_t(i)].first);
        EXPECT_EQ(n.DirName(i), expected[std::size_t(i)].second);
        EXPECT_EQ(m.Path(i), "/data/dir/md_db3_Zoe/" + expected[std::size_t(i)].first + "/");
        EXPECT_EQ(n.Path(i), "/data/dir/md_db3_Zoe/" + expected[std::size_t(i)].second + "/");
    }
    EXPECT_THROW(m.Path(3), kv::EListError);
}

TEST(CatalogueModels, HiddenNamesShowAsSolutionNumbers) {
    cattest::SettingsGuard guard;
    kv::TModels m("/d", "Main", "f", guard);
    for (const char* name : {"Alpha", "Beta"}) {
        kv::TModel e;
        e.Name = name;
        m.Add(e);
    }
    struct Case {
        bool hide, show;
        std::string first, second;
    };
    const std::vector<Case> cases = {
        {false, false, "Alpha", "Beta"},
        {true, false, "*Solution #1*", "*Solution #2*"},
        {true, true, "Alpha", "Beta"},
    };
    for (const auto& c : cases) {
        m.HideNames = c.hide;
        guard.settings.ShowHiddenNames = c.show;
        EXPECT_EQ(m.DisplayName(0), c.first);
        EXPECT_EQ(m.DisplayName(1), c.second);
    }
}

} // namespace
