// A balance with every list and record its file holds, for the balance
// tests, the hostile suite and the fuzz seeds.
#pragma once

#include <string>

#include "items/KvBalance.h"

namespace kvtest {

// Parties 1 and 2 resolve against a model that has them; 42 never does.
inline void FillBalance(kv::TBalance& b) {
    b.Date = 45290.75;
    b.FirstYear = 2024;
    b.AddPartyID(0, 1, "Anne Roy");
    b.AddPartyID(17, 2, "Marc (pension)");
    b.AddPartyID(33, 42, "Nobody");
    b.Items(4).push_back({7001});
    b.Items(6).push_back({7002});
    auto& cash = b.Add("Cash", "Bank; and cash");
    auto& d1 = cash.FindOrAdd(45000);   // 15 March 2023
    d1.Add(10, 100);
    d1.Add(11, -40);
    d1.AddFinItem(7001, 60, 1);
    auto& d2 = cash.FindOrAdd(45200);   // 1 October 2023: the same year
    d2.Add(10, 150.25);
    d2.Add(12, -1e-300);
    cash.FindOrAdd(45400).Add(10, -50);
    b.Add("Debt").FindOrAdd(45400).Add(20, -20);
    b.Add(std::string(255, 'k'), std::string(1000, 't'));
}

} // namespace kvtest
