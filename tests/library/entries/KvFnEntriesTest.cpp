// The chart of accounts: every field of a hand-laid record, round trips,
// the tree, lookups, groups, versions and the optional French names.
#include <string>
#include <tuple>
#include <vector>

#include <gtest/gtest.h>

#include "EntriesTestUtil.h"
#include "KvErrors.h"
#include "demo/DemoChart.h"
#include "entries/KvFnEntries.h"

using namespace kvtest;
using kv::TEntries;
using kv::TEntry;

namespace {

std::vector<std::int32_t> Ids(const std::vector<TEntry*>& list) {
    std::vector<std::int32_t> ids;
    for (const TEntry* e : list) ids.push_back(e->EntryID);
    return ids;
}

class EntriesFile : public TempDirTest {
protected:
    std::string WriteRaw(const RawChart& c, bool extraInts, const std::string& name = "Entries.dat") {
        WriteBytes(Path(name), RawFile(c, extraInts).b);
        return Path(name);
    }
};

// ---------------------------------------------------------------- layout and round trips

struct KindCase {
    std::uint8_t kind;
    bool extraInts;
};

class EntriesKindLayout : public EntriesFile, public ::testing::WithParamInterface<KindCase> {};

TEST_P(EntriesKindLayout, HandWrittenRecordReadsEveryField) {
    const auto [kind, extra] = GetParam();
    RawChart c;
    c.types = 2;
    c.entries.push_back({50, 1239, {1, 2, -1, -1}, 4, 1, "RRSP", {"EGRP=PPCON", "RATE=5"}});
    c.tree1.push_back({0, {}});
    c.version = kv::ExpectedEntriesVersion(kind);
    TEntries t(kind, WriteRaw(c, extra));
    t.Load(true);

    ASSERT_EQ(t.EntriesByID().size(), 1u);
    const TEntry& e = *t.EntriesByID()[0];
    EXPECT_EQ(std::tuple(e.ItemClassNo, e.EntryID, e.KindCode(), e.GroupID, e.Byte2, e.Data1, e.Int1, e.Data2, e.Flag,
                         e.Int2, e.Double1),
              std::tuple(50, 1239, -35, 4, 9, 0xB1, 123456, 0xB2, true, -7, 2.5));
    EXPECT_EQ(e.TreeKeys, (std::array<std::int32_t, 4>{1, 2, -1, -1}));
    EXPECT_EQ(e.Ints, (std::array<std::int32_t, 3>{-35, 2, 3}));
    EXPECT_EQ(e.Data4, (std::array<std::uint8_t, 4>{0xA1, 0xA2, 0xA3, 0xA4}));
    EXPECT_EQ(e.EntryType, t.EntryTypes()[1].get());
    EXPECT_EQ(std::tuple(e.Name, e.FrenchName, e.LongText, e.Name2, e.FrenchName2),
              std::tuple("RRSP", "fr:RRSP", "help:RRSP", "n2", "f2"));
    EXPECT_EQ(e.ExtraInts, extra ? (std::array<std::int32_t, 4>{41, 42, 43, 44}) : (std::array<std::int32_t, 4>{}));
    EXPECT_EQ(e.SpecProp("RATE"), "5");
    EXPECT_TRUE(e.InGroup(kv::TEntryGrp::EGRP_PPCON));
    EXPECT_EQ(e.Groups.count(), 1u);

    ASSERT_EQ(t.AccGroups().size(), 1u);
    EXPECT_EQ(t.AccGroups()[0]->Texts[10], "a10");
    ASSERT_EQ(t.EntryVals().size(), 1u);
    EXPECT_EQ(std::tuple(t.EntryVals()[0].Kind, t.EntryVals()[0].Text, t.EntryVals()[0].Value), std::tuple(3, "v2", 99));
    EXPECT_EQ(t.EnTaxLabels(), (std::vector<std::string>{"Federal tax", "Provincial tax"}));
    EXPECT_EQ(t.Version(), kv::ExpectedEntriesVersion(kind));
}

TEST_P(EntriesKindLayout, DemoChartRoundTripsByteForByte) {
    const std::uint8_t kind = GetParam().kind;
    const std::string path = kv::WriteDemoChart(kind, dir_.string());
    // Every field is checked against hand-laid bytes above; here the whole chart.
    TEntries t(kind, path);
    t.Load(true);
    EXPECT_EQ(t.EntriesByID().size(), kv::MakeDemoChart(kind, path)->EntriesByID().size());
    t.Save(Path("again.dat"));
    EXPECT_EQ(ReadBytes(Path("again.dat")), ReadBytes(path));
}

INSTANTIATE_TEST_SUITE_P(Kinds, EntriesKindLayout,
                         ::testing::Values(KindCase{0, true}, KindCase{1, false}, KindCase{2, false},
                                           KindCase{4, true}),
                         [](const auto& info) { return "Kind" + std::to_string(info.param.kind); });

// The four integers decide where every later field starts, so the other
// kind's file must never load as a plausible chart.
TEST_F(EntriesFile, FileOfOtherKindFails) {
    for (const auto& [written, read] : {std::pair{0, 1}, std::pair{1, 0}, std::pair{4, 2}, std::pair{2, 4}}) {
        SCOPED_TRACE(std::to_string(written) + " read as " + std::to_string(read));
        const std::string path = Path("k" + std::to_string(written) + ".dat");
        kv::MakeDemoChart(std::uint8_t(written), path)->Save(path);
        TEntries t(std::uint8_t(read), path);
        EXPECT_THROW(t.Load(false), kv::EKvError);
        EXPECT_TRUE(t.EntriesByID().empty());
    }
}

// ---------------------------------------------------------------- types and tree

TEST_F(EntriesFile, TypeByte255IsNoTypeAndAnIndexPastTheListIsDamage) {
    RawChart c;
    c.types = 2;
    c.entries = {{0, 1, {}, 1, 255, "none", {}}, {0, 2, {}, 1, 0, "first", {}}};
    TEntries t(1, WriteRaw(c, false));
    t.Load(false);
    EXPECT_EQ(t.EntriesByID()[0]->EntryType, nullptr);
    EXPECT_EQ(t.EntriesByID()[1]->EntryType, t.EntryTypes()[0].get());

    c.entries[1].type = 2;
    TEntries bad(1, WriteRaw(c, false));
    EXPECT_THROW(bad.Load(false), kv::EFileStructure);
}

TEST_F(EntriesFile, TreeSectionsKeepFileOrderAndBothLandInEntries) {
    RawChart c;
    for (int i = 0; i < 7; ++i) c.entries.push_back({0, 100 + i, {}, 1, 255, "e" + std::to_string(i), {}});
    // First section: 0 -> (3 -> (6), 1, 5); 2 is a leaf root. Second: 4.
    c.tree1 = {{0, {{3, {{6, {}}}}, {1, {}}, {5, {}}}}, {2, {}}};
    c.tree2 = {{4, {}}};
    TEntries t(1, WriteRaw(c, false));
    t.Load(false);

    EXPECT_EQ(Ids(t.Entries()), (std::vector<std::int32_t>{100, 102, 104}));
    EXPECT_EQ(t.FirstTreeCount(), 2u);
    const TEntry& root = *t.GetEntryByID(100);
    EXPECT_EQ(Ids(root.Children), (std::vector<std::int32_t>{103, 101, 105}));
    EXPECT_TRUE(t.GetEntryByID(102)->Children.empty());
    EXPECT_EQ(t.GetEntryByID(106)->Parent, t.GetEntryByID(103));

    const struct { std::int32_t id; int level; } levels[] = {{100, 0}, {103, 1}, {106, 2}, {105, 1}, {104, 0}};
    for (const auto& l : levels) EXPECT_EQ(t.GetEntryByID(l.id)->Level(), l.level) << l.id;

    const struct { std::int32_t outer, inner; bool expected; } parents[] = {
        {100, 106, true}, {100, 100, true}, {103, 106, true}, {106, 103, false}, {100, 102, false}, {104, 100, false},
    };
    for (const auto& p : parents)
        EXPECT_EQ(t.GetEntryByID(p.outer)->ParentOf(t.GetEntryByID(p.inner)), p.expected) << p.outer << " " << p.inner;
}

// ---------------------------------------------------------------- lookups

TEST_F(EntriesFile, LookupsGiveTheFirstMatchInFileOrder) {
    RawChart c;
    c.entries = {{50, 7, {}, 1, 255, "first 7", {}},
                 {50, 8, {}, 1, 255, "class 50 again", {}},
                 {60, 7, {}, 1, 255, "second 7", {}}};
    TEntries t(1, WriteRaw(c, false));
    t.Load(false);
    EXPECT_EQ(t.GetEntryByID(7), t.EntriesByID()[0].get());
    EXPECT_EQ(t.GetEntryByID(9), nullptr);
}

TEST_F(EntriesFile, RootEntryNeedsMinusOneInTheOtherKeysAndATopLevelNode) {
    RawChart c;
    c.entries = {{0, 1, {5, 0, -1, -1}, 1, 255, "key 2 set", {}},
                 {0, 2, {5, -1, -1, -1}, 1, 255, "child, not top level", {}},
                 {0, 3, {5, -1, -1, 0}, 1, 255, "key 4 set", {}},
                 {0, 4, {5, -1, -1, -1}, 1, 255, "the root", {}},
                 {0, 5, {5, -1, -1, -1}, 1, 255, "later root", {}},
                 {0, 6, {6, -1, -1, -1}, 1, 255, "other", {}}};
    c.tree1 = {{0, {{1, {}}}}, {2, {}}};
    c.tree2 = {{3, {}}, {4, {}}, {5, {}}};
    TEntries t(1, WriteRaw(c, false));
    t.Load(false);
    EXPECT_EQ(t.GetRootEntry(5), t.GetEntryByID(4));
    EXPECT_EQ(t.GetRootEntry(6), t.GetEntryByID(6));
    EXPECT_EQ(t.GetRootEntry(7), nullptr);
    EXPECT_EQ(t.GetRootEntry(-1), nullptr);
}

// ---------------------------------------------------------------- groups

TEST(EntriesGroups, CodesParse) {
    using G = kv::TEntryGrp;
    const struct { const char* text; std::vector<G> expected; } cases[] = {
        {"HOME", {G::EGRP_HOME}},
        {"HOME,REALEST", {G::EGRP_HOME, G::EGRP_REALEST}},
        {" VACATION , NOSUCH,TOYS", {G::EGRP_VACATION, G::EGRP_TOYS}},
        {"GCVEHICLE,,LIFEINS,", {G::EGRP_GCVEHICLE, G::EGRP_LIFEINS}},
        {"home", {}},
        {"EGRP_HOME", {}},
    };
    for (const auto& c : cases) {
        kv::TEntryGrps expected;
        for (G g : c.expected) expected.set(std::size_t(g));
        EXPECT_EQ(kv::ParseEntryGrps(c.text), expected) << '"' << c.text << '"';
    }
    for (std::size_t i = 0; i < kv::EntryGrpCount; ++i) {
        const auto g = kv::TEntryGrp(i);
        EXPECT_EQ(kv::ParseEntryGrps(kv::EntryGrpCode(g)), kv::TEntryGrps().set(i)) << i;
    }
}

TEST(EntriesGroups, SpecPropLookup) {
    TEntry e;
    e.SpecProps = {"RATEX=1", "RATE=5", "RATE=6", "EMPTY=", "noequals", "=orphan"};
    const struct { const char* name; const char* value; bool has; } cases[] = {
        {"RATE", "5", true},  {"RATEX", "1", true},    {"RAT", "", false}, {"EMPTY", "", true},
        {"noequals", "", false}, {"rate", "", false},  {"", "orphan", true},
    };
    for (const auto& c : cases) {
        EXPECT_EQ(e.SpecProp(c.name), c.value) << c.name;
        EXPECT_EQ(e.HasSpecProp(c.name), c.has) << c.name;
    }
}

TEST_F(EntriesFile, GroupsFollowTheEntriesGroupIdentifiers) {
    RawChart c;
    c.entries = {{0, 1, {}, 3, 255, "a", {"EGRP=HOME"}}, {0, 2, {}, 0, 255, "b", {}}, {0, 3, {}, 3, 255, "c", {}},
                 {0, 4, {}, 255, 255, "d", {}}};
    TEntries t(1, WriteRaw(c, false));
    t.Load(false);
    std::vector<int> ids;
    for (const auto& g : t.Groups()) ids.push_back(g->ID);
    EXPECT_EQ(ids, (std::vector<int>{3, 0, 255}));
    for (int id : {1, 2, 4, 254}) EXPECT_EQ(t.FindGroup(std::uint8_t(id)), nullptr) << id;
    ASSERT_NE(t.FindGroup(0), nullptr);
    EXPECT_EQ(t.FindGroup(0)->Value, 0);
    EXPECT_EQ(t.GroupOf(*t.GetEntryByID(3)), t.FindGroup(3));
    t.Load(false);
    EXPECT_EQ(t.Groups().size(), 3u) << "a second load starts afresh";
}

// ---------------------------------------------------------------- version

TEST_F(EntriesFile, VersionRules) {
    const struct {
        std::uint8_t kind;
        std::optional<std::int32_t> version;
        bool showError;
        bool throws;
        std::int32_t read;
    } cases[] = {
        {0, std::nullopt, false, false, 0}, {0, std::nullopt, true, true, 0}, {0, 45017, true, false, 45017},
        {4, 45017, true, false, 45017},     {1, 44927, true, false, 44927},   {2, 44986, true, false, 44986},
        {1, 45017, true, true, 45017},      {1, 45017, false, false, 45017},  {3, std::nullopt, true, false, 0},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(std::to_string(c.kind) + " " + std::to_string(c.version.value_or(-1)));
        RawChart raw;
        raw.entries = {{0, 1, {}, 1, 255, "x", {}}};
        raw.version = c.version;
        TEntries t(c.kind, WriteRaw(raw, kv::EntriesHaveExtraInts(c.kind)));
        if (c.throws)
            EXPECT_THROW(t.Load(c.showError), kv::EEntriesVersion);
        else
            EXPECT_NO_THROW(t.Load(c.showError));
        EXPECT_EQ(t.Version(), c.read);
        EXPECT_EQ(t.HasVersion(), c.version.has_value());
        EXPECT_EQ(t.EntriesByID().size(), 1u) << "the chart stays loaded";
    }
}

TEST_F(EntriesFile, VersionMessageNamesTheFile) {
    RawChart raw;
    raw.version = 41000;
    const std::string path = WriteRaw(raw, false);
    TEntries t(1, path);
    try {
        t.Load(true);
        FAIL() << "no exception";
    } catch (const kv::EEntriesVersion& e) {
        EXPECT_NE(std::string(e.what()).find(path), std::string::npos) << e.what();
    }
}

// ---------------------------------------------------------------- French.dat

TEST_F(EntriesFile, FrenchFileIsOptional) {
    RawChart raw;
    raw.entries = {{0, 1, {}, 1, 255, "one", {}}, {0, 2, {}, 1, 255, "two", {}}, {0, 1, {}, 1, 255, "dup", {}}};
    TEntries t(1, WriteRaw(raw, false));
    EXPECT_EQ(t.FrenchFileName(), Path("French.dat"));
    t.Load(false);
    EXPECT_EQ(t.GetEntryByID(2)->FrenchName, "fr:two");
    EXPECT_TRUE(t.FrTaxLabels().empty());

    ByteWriter fr;
    fr.I32(3);
    fr.I32(2); fr.Short("deux");
    fr.I32(1); fr.Short("un");
    fr.I32(77); fr.Short("inconnu");
    fr.I32(1);
    fr.Short("Impot");
    WriteBytes(Path("French.dat"), fr.b);
    t.Load(false);
    EXPECT_EQ(t.GetEntryByID(2)->FrenchName, "deux");
    EXPECT_EQ(t.EntriesByID()[0]->FrenchName, "un");
    EXPECT_EQ(t.EntriesByID()[2]->FrenchName, "fr:dup") << "only the first entry of an identifier";
    EXPECT_EQ(t.FrTaxLabels(), (std::vector<std::string>{"Impot"}));

    // Names only, no tax labels.
    fr.b.resize(fr.b.size() - 4 - 6);
    WriteBytes(Path("French.dat"), fr.b);
    t.Load(false);
    EXPECT_EQ(t.GetEntryByID(2)->FrenchName, "deux");
    EXPECT_TRUE(t.FrTaxLabels().empty());

    fr.b.resize(fr.b.size() - 2);
    WriteBytes(Path("French.dat"), fr.b);
    EXPECT_THROW(t.Load(false), kv::EReadError);
    EXPECT_TRUE(t.EntriesByID().empty());
}

} // namespace
