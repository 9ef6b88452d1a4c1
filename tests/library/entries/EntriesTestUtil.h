// Helpers of the chart-of-accounts tests: a temp folder per test and
// "Entries.dat" laid out by hand, independently of TEntries::Save.
#pragma once

#include <cstdint>
#include <filesystem>
#include <map>
#include <optional>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "TestFiles.h"

namespace kvtest {

// A temp folder per test.
class TempDirTest : public ::testing::Test {
protected:
    std::string Path(const std::string& name) const { return tmp_.File(name); }
    TempDir tmp_;
    const std::filesystem::path& dir_ = tmp_.Path();
};

struct RawEntry {
    std::int32_t classNo = 0;
    std::int32_t id = 0;
    std::int32_t keys[4] = {-1, -1, -1, -1};
    std::uint8_t group = 1;
    std::uint8_t type = 255;
    std::string name;
    std::vector<std::string> props;
};

struct RawNode {
    std::int32_t pos;
    std::vector<RawNode> kids;
};

struct RawChart {
    std::vector<RawEntry> entries;
    std::vector<RawNode> tree1, tree2;
    int types = 1;
    std::optional<std::int32_t> version;
};

inline void PutNode(ByteWriter& w, const RawNode& n) {
    w.I32(n.pos);
    w.U8(std::uint8_t(n.kids.size()));
    for (const RawNode& k : n.kids) PutNode(w, k);
}

// Marks: "accounts", "types", "entries", "props0" (first entry's property
// count), "tree1", "tree2", "vals", "labels", "end7" (where the version goes).
inline ByteWriter RawFile(const RawChart& c, bool extraInts) {
    ByteWriter w;
    w.Mark("accounts");
    w.I32(1);
    for (int i = 0; i < 11; ++i) w.Short("a" + std::to_string(i));
    w.Str("note");
    w.Mark("types");
    w.I32(c.types);
    for (int i = 0; i < c.types; ++i) {
        w.U8(std::uint8_t(10 + i));
        w.Short("type" + std::to_string(i));
        w.U8(7);
        w.U8(1);
    }
    w.Mark("entries");
    w.I32(std::int32_t(c.entries.size()));
    for (std::size_t i = 0; i < c.entries.size(); ++i) {
        const RawEntry& e = c.entries[i];
        w.I32(e.classNo);
        w.I32(e.id);
        for (std::int32_t k : e.keys) w.I32(k);
        w.I32(-35); w.I32(2); w.I32(3);
        w.U8(e.group); w.U8(9);
        w.U8(0xA1); w.U8(0xA2); w.U8(0xA3); w.U8(0xA4);
        w.U8(0xB1);
        w.I32(123456);
        w.U8(0xB2);
        w.U8(1);
        w.I32(-7);
        w.F64(2.5);
        w.U8(e.type);
        w.Short(e.name);
        w.Short("fr:" + e.name);
        w.StrX("help:" + e.name);
        w.Short("n2");
        w.Short("f2");
        if (extraInts) { w.I32(41); w.I32(42); w.I32(43); w.I32(44); }
        if (i == 0) w.Mark("props0");
        w.I32(std::int32_t(e.props.size()));
        for (const std::string& p : e.props) w.Short(p);
    }
    w.Mark("tree1");
    w.I32(std::int32_t(c.tree1.size()));
    for (const RawNode& n : c.tree1) PutNode(w, n);
    w.Mark("tree2");
    w.I32(std::int32_t(c.tree2.size()));
    for (const RawNode& n : c.tree2) PutNode(w, n);
    w.Mark("vals");
    w.I32(1);
    w.U8(3); w.Short("v1"); w.Short("v2"); w.I32(99);
    w.Mark("labels");
    w.I32(2);
    w.Short("Federal tax");
    w.Short("Provincial tax");
    w.Mark("end7");
    if (c.version) w.I32(*c.version);
    return w;
}

} // namespace kvtest
