// Damaged and hostile "Entries.dat" files: every one must end in a library
// exception, with nothing half-loaded left behind.
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "EntriesTestUtil.h"
#include "KvErrors.h"
#include "entries/KvEntriesDemo.h"
#include "entries/KvFnEntries.h"

using namespace kvtest;
using kv::TEntries;

namespace {

class EntriesCorrupt : public TempDirTest {
protected:
    // Loads bytes as Entries.dat; returns the exception's kind, or "" when it loaded.
    std::string LoadKind(const Bytes& bytes, std::uint8_t kind) {
        WriteAll(Path("Entries.dat"), bytes);
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

TEST_F(EntriesCorrupt, TruncationAtEveryOffsetFails) {
    for (const std::uint8_t kind : {0, 1}) {
        SCOPED_TRACE(int(kind));
        kv::MakeDemoChart(kind, "")->Save(Path("full.dat"));
        const Bytes full = ReadAll(Path("full.dat"));
        ASSERT_GT(full.size(), 1000u);
        for (std::size_t len = 0; len < full.size(); ++len) {
            const std::string got = LoadKind(Bytes(full.begin(), full.begin() + std::ptrdiff_t(len)), kind);
            // Cut right before the version: a complete older file.
            if (len == full.size() - 4)
                EXPECT_EQ(got, "") << len;
            else
                EXPECT_NE(got, "") << len;
        }
    }
}

TEST_F(EntriesCorrupt, BogusCountsFailBeforeAllocating) {
    RawChart c = Chart(2);
    c.tree1 = {{0, {}}};
    c.tree2 = {{1, {}}};
    const ByteWriter good = RawFile(c, false);
    ASSERT_EQ(LoadKind(good.b, 1), "");
    const struct { const char* mark; std::int32_t count; const char* expected; } cases[] = {
        {"accounts", -1, "structure"}, {"accounts", 0x7FFFFFFF, "read"},
        {"types", -1, "structure"},    {"types", 0x7FFFFFFF, "read"},
        {"entries", -1, "structure"},  {"entries", 0x7FFFFFFF, "read"},
        {"props0", -1, "structure"},   {"props0", 0x7FFFFFFF, "read"},
        {"tree1", -1, "structure"},    {"tree1", 0x7FFFFFFF, "read"},
        {"tree2", -1, "structure"},    {"tree2", 0x7FFFFFFF, "read"},
        {"vals", -1, "structure"},     {"vals", 0x7FFFFFFF, "read"},
        {"labels", -1, "structure"},   {"labels", 0x7FFFFFFF, "read"}, {"labels", 3, "read"},
        {"accounts", std::int32_t(0x80000000), "structure"},
    };
    for (const auto& k : cases) {
        ByteWriter w = good;
        w.Patch(w.marks.at(k.mark), k.count);
        EXPECT_EQ(LoadKind(w.b, 1), k.expected) << k.mark << " " << k.count;
    }
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

TEST_F(EntriesCorrupt, LoopsAndSecondParentsAreDamage) {
    const struct { const char* what; std::vector<RawNode> tree1, tree2; } cases[] = {
        {"own child", {{0, {{0, {}}}}}, {}},
        {"child of its child", {{0, {{1, {{0, {}}}}}}}, {}},
        {"two parents", {{0, {{2, {}}}}, {1, {{2, {}}}}}, {}},
        {"two parents across sections", {{0, {{2, {}}}}}, {{1, {{2, {}}}}}},
        {"loop across nodes", {{0, {{1, {}}}}, {1, {{2, {}}}}}, {{2, {{0, {}}}}}},
    };
    for (const auto& k : cases) {
        RawChart c = Chart(3);
        c.tree1 = k.tree1;
        c.tree2 = k.tree2;
        EXPECT_EQ(LoadKind(RawFile(c, false).b, 1), "structure") << k.what;
    }
}

// A chain made of many flat nodes is legal however deep it gets, and walking
// it must not recurse.
TEST_F(EntriesCorrupt, LongChainOfFlatNodesLoads) {
    constexpr int n = 5000;
    RawChart c = Chart(n);
    for (int i = 0; i + 1 < n; ++i) c.tree1.push_back({i, {{i + 1, {}}}});
    WriteAll(Path("Entries.dat"), RawFile(c, false).b);
    TEntries t(1, Path("Entries.dat"));
    t.Load(false);
    const kv::TEntry* last = t.EntriesByID().back().get();
    EXPECT_EQ(last->Level(), n - 1);
    EXPECT_TRUE(t.EntriesByID()[0]->ParentOf(last));
    EXPECT_FALSE(last->ParentOf(t.EntriesByID()[0].get()));
}

} // namespace
