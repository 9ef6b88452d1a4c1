// Writes the seed inputs of fuzz_balance with the library's own writer:
//   make_balance_corpus <output folder>
#include <cstdio>
#include <string>

#include "items/KvBalance.h"

int main(int argc, char** argv) {
    if (argc != 2) {
        std::fprintf(stderr, "usage: %s <output folder>\n", argv[0]);
        return 2;
    }
    const std::string dir = argv[1];
    kv::TBalance empty;
    empty.Date = 45000.5;
    empty.FirstYear = 2024;
    empty.Save(dir + "/empty");

    kv::TBalance b;
    b.Date = 45290.75;
    b.FirstYear = 2024;
    b.AddPartyID(0, 1, "Anne Roy");
    b.AddPartyID(17, 2, "Marc Roy");
    b.AddPartyID(33, 99, "Unknown");
    b.Items(4).push_back({7001});
    b.Items(6).push_back({7002});
    auto& cash = b.Add("Cash", "Bank accounts");
    auto& d1 = cash.FindOrAdd(45000);
    d1.Add(10, 100);
    d1.Add(11, -40);
    d1.AddFinItem(7001, 60, 1);
    cash.FindOrAdd(45200).Add(10, 150);
    cash.FindOrAdd(45400).Add(10, -50);
    b.Add("Debt").FindOrAdd(45400).Add(20, -20);
    b.Save(dir + "/accounts");
    return 0;
}
