#include "decl/KvAlcClasses.h"

#include <array>

#include "KvErrors.h"

namespace kv {

namespace {

using E = TAlcSubCls2;
using S = TAlcSubCls;

constexpr std::array<E, 2> kMoneyMarket{{{"Canadian Dollar"}, {"U.S. Dollar"}}};
constexpr std::array<E, 3> kCorpBonds{{{"AAA/AA"}, {"A"}, {"BBB"}}};
constexpr std::array<E, 3> kUSGrowth{{{"Technology"}, {"Health Care"}, {"Consumer Discretionary"}}};
constexpr std::array<E, 4> kUSSectors{{{"Financials"}, {"Energy"}, {"Industrials"}, {"Utilities"}}};
constexpr std::array<E, 5> kEMAsia{{{"China"}, {"India"}, {"Taiwan"}, {"South Korea"}, {"Other Asia"}}};
constexpr std::array<E, 3> kEMLatin{{{"Brazil"}, {"Mexico"}, {"Other Latin America"}}};
constexpr std::array<E, 3> kGlEurope{{{"United Kingdom"}, {"Eurozone"}, {"Europe ex Eurozone"}}};

constexpr std::array<S, kAlcSubClsCount> kShortFixed{{
    {"Cash", {}},
    {"Money Market", kMoneyMarket},
    {"Treasury Bills", {}},
    {"GICs (1 Year or Less)", {}},
    {"Short-Term Government Bonds", {}},
    {"Short-Term Corporate Bonds", {}},
    {"High-Interest Savings", {}},
}};
constexpr std::array<S, kAlcSubClsCount> kLongFixed{{
    {"Federal Government Bonds", {}},
    {"Provincial Bonds", {}},
    {"Municipal Bonds", {}},
    {"Investment-Grade Corporate Bonds", kCorpBonds},
    {"High-Yield Bonds", {}},
    {"Real Return Bonds", {}},
    {"Mortgages", {}},
}};
constexpr std::array<S, kAlcSubClsCount> kEqCanada{{
    {"Large Cap", {}},
    {"Mid Cap", {}},
    {"Small Cap", {}},
    {"Dividend", {}},
    {"Preferred Shares", {}},
    {"Income Trusts and REITs", {}},
    {"Resource Sector", {}},
}};
constexpr std::array<S, kAlcSubClsCount> kEqUS{{
    {"Large Cap Growth", kUSGrowth},
    {"Large Cap Value", {}},
    {"Mid Cap", {}},
    {"Small Cap", {}},
    {"Dividend", {}},
    {"Sector Funds", kUSSectors},
    {"REITs", {}},
}};
constexpr std::array<S, kAlcSubClsCount> kEqEmerging{{
    {"Asia", kEMAsia},
    {"Latin America", kEMLatin},
    {"Emerging Europe", {}},
    {"Middle East and Africa", {}},
    {"Frontier Markets", {}},
    {"Small Cap", {}},
    {"Broad Emerging Markets", {}},
}};
constexpr std::array<S, kAlcSubClsCount> kEqGlobal{{
    {"Developed Markets", {}},
    {"Europe", kGlEurope},
    {"Japan", {}},
    {"Pacific ex Japan", {}},
    {"International Small Cap", {}},
    {"Global Dividend", {}},
    {"Global Infrastructure", {}},
}};

constexpr std::array<TAlcCls, kAlcClsCount> kClasses{{
    {1, "Short-Term Fixed", kShortFixed},
    {2, "Mid/Long-Term Fixed", kLongFixed},
    {3, "Equities Canada", kEqCanada},
    {4, "Equities U.S.", kEqUS},
    {5, "Equities Emerging Markets", kEqEmerging},
    {6, "Equities Global", kEqGlobal},
}};

constexpr int TotalEntries() {
    int n = 0;
    for (const auto& c : kClasses)
        for (const auto& s : c.SubClasses) n += static_cast<int>(s.Entries.size());
    return n;
}
static_assert(TotalEntries() == 23);

} // namespace

std::span<const TAlcCls> AlcClasses() { return kClasses; }

const TAlcCls& AlcCls(int cls) {
    if (cls < 0 || cls >= kAlcClsCount) throw EListError(cls);
    return kClasses[static_cast<std::size_t>(cls)];
}

const TAlcSubCls& AlcSubCls(int cls, int sub) {
    const TAlcCls& c = AlcCls(cls);
    if (sub < 0 || sub >= kAlcSubClsCount) throw EListError(sub);
    return c.SubClasses[static_cast<std::size_t>(sub)];
}

const TAlcSubCls2& AlcSubCls2(int cls, int sub, int entry) {
    const TAlcSubCls& s = AlcSubCls(cls, sub);
    if (entry < 0 || entry >= s.Count()) throw EListError(entry);
    return s.Entries[static_cast<std::size_t>(entry)];
}

int AlcSubCls2Count(int cls, int sub) { return AlcSubCls(cls, sub).Count(); }

int AlcSubCls2Total() { return TotalEntries(); }

int AlcClsIndexOf(std::string_view name) {
    for (int i = 0; i < kAlcClsCount; ++i)
        if (kClasses[static_cast<std::size_t>(i)].Name == name) return i;
    return -1;
}

int AlcSubClsIndexOf(int cls, std::string_view name) {
    const TAlcCls& c = AlcCls(cls);
    for (int i = 0; i < kAlcSubClsCount; ++i)
        if (c.SubClasses[static_cast<std::size_t>(i)].Name == name) return i;
    return -1;
}

} // namespace kv
