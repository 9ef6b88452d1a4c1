// Loads hostile bytes as "Entries.dat" for a kind with the four extra integers
// (0) and one without (1), then walks what a successful load built.
#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <vector>

#include "KvErrors.h"
#include "entries/KvFnEntries.h"
#include "files/KvFnBufFile.h"

namespace {

// A folder that never holds a French.dat, so every run reads the same input.
constexpr const char* FileName = "/nonexistent-tessary-fuzz/Entries.dat";

void Walk(const kv::TEntries& t) {
    volatile long sink = 0;
    for (const auto& e : t.EntriesByID()) {
        sink = sink + e->Level() + long(e->Groups.count()) + long(e->SpecProp("EGRP").size());
        if (const kv::TEntry* byId = t.GetEntryByID(e->EntryID)) sink = sink + byId->ItemClassNo;
    }
    const auto& tops = t.Entries();
    // Bounded: ParentOf walks a whole subtree per call.
    for (std::size_t i = 0; i < std::min<std::size_t>(tops.size(), 8); ++i)
        if (!t.EntriesByID().empty()) sink = sink + tops[i]->ParentOf(t.EntriesByID().back().get());
    for (const auto& a : t.AccGroups()) sink = sink + a->AccLevel() + long(a->GetColor());
    if (!tops.empty()) sink = sink + (t.GetRootEntry(tops[0]->TreeKeys[0]) != nullptr);
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    for (const std::uint8_t kind : {0, 1}) {
        kv::TBufReadFile r = kv::TBufReadFile::FromBytes(std::vector<std::uint8_t>(data, data + size), FileName);
        kv::TEntries t(kind, FileName);
        try {
            t.Load(r, kind == 0);
            Walk(t);
        } catch (const kv::EKvError&) {
        }
    }
    return 0;
}
