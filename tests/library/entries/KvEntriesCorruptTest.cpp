// Damaged and hostile "Entries.dat" files: every one must end in a library
// exception, with nothing half-loaded left behind.
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "EntriesTestUtil.h"
#include "KvErrors.h"
#include "demo/DemoChart.h"
#include "entries/KvFnEntries.h"

using namespace kvtest;
using kv::TEntries;

namespace {

class EntriesCorrupt : public TempDirTest {
protected:
    // Loads bytes as Entries.dat; returns the exception's kind, or "" when it loaded.
    std::string LoadKind(const Bytes& bytes, std::uint8_t kind) {
        WriteBytes(Path("Entries.dat"), bytes);
        TEntries t(kind, Path("Entries.dat"));
        try {
            t.Load(false);
        } catch (const kv::EFileStructure& e) {
            EXPECT_EQ(std::string(e.what()), "Error in file structure " + Path("Entries.dat"));
            EXPECT_TRUE(t.EntriesByID().empty() && t.Entries().empty() && t.Groups().empty());
            return "structure";
        } catch (const kv::EReadError&) {
            EXPECT_TRUE(t.EntriesByID().empty() && t.Entries().empty() && t.Groups().empty());
            return "read";
        }
        return "";
    }

    static RawChart Chart(int n) {
        RawChart c;
        for (int i = 0; i < n; ++i) c.entries.push_back({0, i, {}, 1, 255, "e", {"A=1"}});
        return c;
    }
};

TEST_F(EntriesCorrupt, BogusCountsFailBeforeAllocating) {
    RawChart c = Chart(2);
    c.tree1 = {{0, {}}};
    c.tree2 = {{1, {}}};
    const ByteWriter good = RawFile(c, false);
    ASSERT_EQ(LoadKind(good.b, 1), "");
    const char* const marks[] = {"accounts", "types", "entries", "props0", "tree1", "tree2", "vals", "labels"};
    auto patched = [&](const char* mark, std::int32_t count) {
        ByteWriter w = good;
        w.Patch(w.marks.at(mark), count);
        return LoadKind(w.b, 1);
    };
    for (const char* mark : marks) {
        EXPECT_EQ(patched(mark, 0x7FFFFFFF), "read") << mark;
        // Below 1 a section is empty, as a counted loop that never runs: the
        // file then reads exactly as with a count of 0.
        const std::string asEmpty = patched(mark, 0);
        EXPECT_EQ(patched(mark, -1), asEmpty) << mark;
        EXPECT_EQ(patched(mark, std::int32_t(0x80000000)), asEmpty) << mark;
    }
    EXPECT_EQ(patched("labels", 3), "read");
}

TEST_F(EntriesCorrupt, TreeNodeOutsideTheEntriesIsDamage) {
    for (const std::int32_t pos : {2, -1, 0x7FFFFFFF, std::int32_t(0x80000000)}) {
        RawChart c = Chart(2);
        c.tree2 = {{0, {{pos, {}}}}};
        EXPECT_EQ(LoadKind(RawFile(c, false).b, 1), "structure") << pos;
    }
    // A child count that the file cannot hold: the following bytes are read
    // as nodes until something gives.
    RawChart c = Chart(2);
    c.tree1 = {{0, {}}};
    ByteWriter w = RawFile(c, false);
    w.b[w.marks.at("tree1") + 8] = 255;
    EXPECT_NE(LoadKind(w.b, 1), "");
}

// Nested node i holds entry i; depth counts the levels of nesting.
RawNode Chain(int depth, int at = 0) {
    RawNode n{at, {}};
    if (at + 1 < depth) n.kids.push_back(Chain(depth, at + 1));
    return n;
}

TEST_F(EntriesCorrupt, NestingIsBoundedAt64Levels) {
    const struct { int depth; const char* expected; } cases[] = {{64, ""}, {65, "structure"}, {400, "structure"}};
    for (const auto& k : cases) {
        RawChart c = Chart(k.depth);
        c.tree1 = {Chain(k.depth)};
        EXPECT_EQ(LoadKind(RawFile(c, false).b, 1), k.expected) << k.depth;
    }
}

TEST_F(EntriesCorrupt, LoopsAreDamage) {
    const struct { const char* what; std::vector<RawNode> tree1, tree2; } cases[] = {
        {"own child", {{0, {{0, {}}}}}, {}},
        {"child of its child", {{0, {{1, {{0, {}}}}}}}, {}},
        {"loop across nodes", {{0, {{1, {}}}}, {1, {{2, {}}}}}, {{2, {{0, {}}}}}},
        {"loop after a second parent", {{0, {{1, {}}}}, {2, {{1, {}}}}}, {{1, {{2, {}}}}}},
    };
    for (const auto& k : cases) {
        RawChart c = Chart(3);
        c.tree1 = k.tree1;
        c.tree2 = k.tree2;
        EXPECT_EQ(LoadKind(RawFile(c, false).b, 1), "structure") << k.what;
    }
}

// The second tree section may repeat a branch: the entry is appended to its
// new parent, which becomes its parent; the former parent keeps listing it.
TEST_F(EntriesCorrupt, AnEntryAttachedAgainTakesItsNewParent) {
    const struct { const char* what; std::vector<RawNode> tree1, tree2; } cases[] = {
        {"within a section", {{0, {{2, {}}}}, {1, {{2, {}}}}}, {}},
        {"across sections", {{0, {{2, {}}}}}, {{1, {{2, {}}}}}},
    };
    for (const auto& k : cases) {
        RawChart c = Chart(3);
        c.tree1 = k.tree1;
        c.tree2 = k.tree2;
        WriteBytes(Path("Entries.dat"), RawFile(c, false).b);
        TEntries t(1, Path("Entries.dat"));
        ASSERT_NO_THROW(t.Load(false)) << k.what;
        const auto& e = t.EntriesByID();
        EXPECT_EQ(e[2]->Parent, e[1].get()) << k.what;
        EXPECT_EQ(e[0]->Children, std::vector<kv::TEntry*>{e[2].get()}) << k.what;
        EXPECT_EQ(e[1]->Children, std::vector<kv::TEntry*>{e[2].get()}) << k.what;
        EXPECT_TRUE(e[0]->ParentOf(e[2].get())) << k.what;
        EXPECT_EQ(e[2]->Level(), 1) << k.what;
    }
}

// Flat nodes can chain entries deeper than nesting can; the same bound of
// 64 levels holds, so each attachment costs at most that many steps.
TEST_F(EntriesCorrupt, ChainsOfFlatNodesAreBoundedAt64LevelsToo) {
    const struct { int n; const char* expected; } cases[] = {{65, ""}, {66, "structure"}, {50000, "structure"}};
    for (const auto& k : cases) {
        RawChart c = Chart(k.n);
        for (int i = 0; i + 1 < k.n; ++i) c.tree1.push_back({i, {{i + 1, {}}}});
        EXPECT_EQ(LoadKind(RawFile(c, false).b, 1), k.expected) << k.n;
    }
    RawChart c = Chart(65);
    for (int i = 0; i + 1 < 65; ++i) c.tree1.push_back({i, {{i + 1, {}}}});
    WriteBytes(Path("Entries.dat"), RawFile(c, false).b);
    TEntries t(1, Path("Entries.dat"));
    t.Load(false);
    const kv::TEntry* last = t.EntriesByID().back().get();
    EXPECT_EQ(last->Level(), 64);
    EXPECT_TRUE(t.EntriesByID()[0]->ParentOf(last));
    EXPECT_FALSE(last->ParentOf(t.EntriesByID()[0].get()));
}

} // namespace
