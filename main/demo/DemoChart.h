// A small but realistic chart of accounts for fixtures, demo client files and
// benchmarks: the investment accounts the import looks for, the registered
// plans with their linked child entries, corporate and trust entries, groups,
// entry types and "EGRP" properties. Its contents are listed in
// docs/formats/entries.md.
#pragma once

#include <cstdint>
#include <memory>
#include <string>

#include "entries/KvFnEntries.h"

namespace kv {

// Entry identifiers of the demo chart.
namespace DemoEntry {
inline constexpr std::int32_t Assets = 10;       // root, first tree, group 0
inline constexpr std::int32_t Investments = 100; // under Assets, group 0
inline constexpr std::int32_t NonReg = 948;
inline constexpr std::int32_t InvestAccount = 2232;
inline constexpr std::int32_t SegFund = 6105;
inline constexpr std::int32_t PrimaryPersonal = 6213;
inline constexpr std::int32_t PrimaryTrust = 6242;
inline constexpr std::int32_t BankAccount = 620;
inline constexpr std::int32_t Registered = 200; // under Assets, group 0
inline constexpr std::int32_t TFSA = 2333;
inline constexpr std::int32_t TFSAESPP = 6210; // under TFSA
inline constexpr std::int32_t RRSP = 1239;
inline constexpr std::int32_t RRSPContrib = 1240;     // under RRSP, kind code -35
inline constexpr std::int32_t RRSPContribRate = 1241; // under RRSP, kind code -36
inline constexpr std::int32_t RRSPFromCorp = -5318;   // under RRSP, kind code -37
inline constexpr std::int32_t RRSPESPP = 6139;        // under RRSP, kind code -42
inline constexpr std::int32_t SpousalRRSP = 895;
inline constexpr std::int32_t RRIF = 1307;
inline constexpr std::int32_t DCP = 1132;
inline constexpr std::int32_t LIRA = 5098;
inline constexpr std::int32_t LRIF = 1375;
inline constexpr std::int32_t RealEstate = 300;
inline constexpr std::int32_t Residence = 1200;
inline constexpr std::int32_t Cottage = 1201;
inline constexpr std::int32_t Vehicle = 1202;
inline constexpr std::int32_t Business = 400;
inline constexpr std::int32_t CorpShares = 7001;
inline constexpr std::int32_t SharesHeld = 7002;
inline constexpr std::int32_t Liabilities = 20; // root, first tree
inline constexpr std::int32_t Mortgage = 2100;
inline constexpr std::int32_t Trust = 30; // root, second tree
inline constexpr std::int32_t CapitalBenef = 8001;
inline constexpr std::int32_t Expenses = 40; // root, second tree
inline constexpr std::int32_t Donations = 4100;
inline constexpr std::int32_t Education = 4101;
inline constexpr std::int32_t LifeInsurance = 4102;
} // namespace DemoEntry

// The demo chart for a product kind, with the version that kind expects.
// fileName is the path it will be saved to or loaded from.
std::unique_ptr<TEntries> MakeDemoChart(std::uint8_t product, std::string fileName);

// Writes "Entries.dat" and "French.dat" of the demo chart into folder (which
// must exist) and returns the path of "Entries.dat".
std::string WriteDemoChart(std::uint8_t product, const std::string& folder);

} // namespace kv
