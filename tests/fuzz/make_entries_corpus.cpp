// Writes the seed inputs of fuzz_entries with the library's own writer:
//   make_entries_corpus <output folder>
#include <cstdio>
#include <string>

#include "demo/DemoChart.h"
#include "entries/KvFnEntries.h"

int main(int argc, char** argv) {
    if (argc != 2) {
        std::fprintf(stderr, "usage: %s <output folder>\n", argv[0]);
        return 2;
    }
    const std::string dir = argv[1];
    for (const std::uint8_t kind : {0, 1, 2})
        kv::MakeDemoChart(kind, "")->Save(dir + "/demo-kind" + std::to_string(kind));

    // An older file without the version, and one with an entry outside the tree.
    auto old = kv::MakeDemoChart(1, "");
    old->ClearVersion();
    old->Save(dir + "/no-version-kind1");

    kv::TEntries small(0, "");
    small.AddEntryType(1, "Asset");
    kv::TEntry& root = small.AddEntry(10, 3, "Assets", 0);
    kv::TEntry& child = small.AddEntry(948, 4, "Non-registered", 1);
    small.AddEntry(2333, 147, "TFSA", 2).SpecProps = {"EGRP=HOME,TFSACON"};
    root.TreeKeys = {1, -1, -1, -1};
    root.AddChild(&child);
    small.AddRootNode(root);
    small.AddEnTaxLabel("Federal tax");
    small.SetVersion(kv::ExpectedEntriesVersion(0));
    small.Save(dir + "/small-kind0");
    return 0;
}
