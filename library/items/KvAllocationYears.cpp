#include "items/KvAllocationYears.h"

#include <algorithm>
#include <cmath>
#include <utility>

#include "KvErrors.h"
#include "items/KvAllocationFields.h"

namespace kv {

using fields::NeedsZero;
using fields::Pos;

double RoundShare(double x, int places) {
    const double scale = std::pow(10.0, places);
    const double y = x * scale;
    const double whole = std::trunc(y);
    const double frac = y - whole;
    // Half to even on a fraction below one: only a fraction beyond one half moves.
    const double step = frac > 0.5 ? 1.0 : frac < -0.5 ? -1.0 : 0.0;
    return (whole + step) / scale;
}

TLibAllocYear::TLibAllocYear() {
    for (int c = 0; c < ClsCount; ++c)
        for (int s = 0; s < SubClsCount; ++s) counts_[c][s] = AlcSubCls2Count(c, s);
    SizeListsToTotal();
}

void TLibAllocYear::CheckCls(int cls) const {
    if (cls < 0 || cls >= ClsCount) throw EListError(cls);
}

void TLibAllocYear::CheckSub(int cls, int sub) const {
    CheckCls(cls);
    if (sub < 0 || sub >= SubClsCount) throw EListError(sub);
}

void TLibAllocYear::CheckEntry(int cls, int sub, int entry) const {
    CheckSub(cls, sub);
    if (entry < 0 || entry >= counts_[cls][sub]) throw EListError(entry);
}

void TLibAllocYear::SizeListsToTotal() {
    const auto n = std::size_t(SubCls2Total());
    for (auto& l : lists_) l.resize(n, 0.0);
    for (auto& l : vals_.Lists) l.resize(n, 0.0);
}

void TLibAllocYear::ClearValues() {
    cls_ = {};
    sub_ = {};
    vals_ = TAmounts{};
    for (auto& l : lists_) l.clear();
    SizeListsToTotal();
}

int TLibAllocYear::FirstPos(int cls, int sub) const {
    int pos = 0;
    if (ListOfCls(cls) == kListCommon)
        for (int c = 0; c < cls; ++c)
            if (ListOfCls(c) == kListCommon)
                for (int s = 0; s < SubClsCount; ++s) pos += counts_[c][s];
    for (int s = 0; s < sub; ++s) pos += counts_[cls][s];
    return pos;
}

double TLibAllocYear::Entry(const std::vector<double>& list, int pos) const {
    return pos >= 0 && std::size_t(pos) < list.size() ? list[std::size_t(pos)] : 0.0;
}

void TLibAllocYear::PutEntry(std::vector<double>& list, int pos, double v) {
    if (std::size_t(pos) >= list.size()) list.resize(std::size_t(pos) + 1, 0.0);
    list[std::size_t(pos)] = v;
}

double TLibAllocYear::GetClsShare(int cls) const {
    CheckCls(cls);
    return cls_[cls];
}

void TLibAllocYear::SetClsShare(int cls, double share) {
    CheckCls(cls);
    cls_[cls] = share;
}

double TLibAllocYear::GetSubClsShare(int cls, int sub) const {
    CheckSub(cls, sub);
    return sub_[cls][sub];
}

void TLibAllocYear::SetSubClsShare(int cls, int sub, double share) {
    CheckSub(cls, sub);
    sub_[cls][sub] = share;
}

double TLibAllocYear::GetSubCls2Share(int cls, int sub, int entry) const {
    CheckEntry(cls, sub, entry);
    return Entry(lists_[ListOfCls(cls)], FirstPos(cls, sub) + entry);
}

void TLibAllocYear::SetSubCls2Share(int cls, int sub, int entry, double share) {
    CheckEntry(cls, sub, entry);
    PutEntry(lists_[ListOfCls(cls)], FirstPos(cls, sub) + entry, share);
}

int TLibAllocYear::GetSubCls2Count(int cls, int sub) const {
    CheckSub(cls, sub);
    return counts_[cls][sub];
}

void TLibAllocYear::SetSubCls2Count(int cls, int sub, int count) {
    CheckSub(cls, sub);
    if (count < 0 || count > MaxSubCls2Count) throw EListError(count);
    counts_[cls][sub] = count;
}

int TLibAllocYear::SubCls2Total() const {
    int n = 0;
    for (const auto& row : counts_)
        for (int v : row) n += v;
    return n;
}

int TLibAllocYear::SubCls2Pos(int cls, int sub, int entry) const {
    CheckEntry(cls, sub, entry);
    return FirstPos(cls, sub) + entry;
}

const std::vector<double>& TLibAllocYear::SubCls2List(TSubCls2List list) const {
    if (list < 0 || list > 2) throw EListError(list);
    return lists_[list];
}

void TLibAllocYear::SetSubCls2List(TSubCls2List list, std::vector<double> shares) {
    if (list < 0 || list > 2) throw EListError(list);
    lists_[list] = std::move(shares);
}

double TLibAllocYear::GetClsVal(int cls) const {
    CheckCls(cls);
    double v = 0;
    for (int s = 0; s < SubClsCount; ++s) v += GetSubClsVal(cls, s);
    return v;
}

double TLibAllocYear::GetSubClsVal(int cls, int sub) const {
    CheckSub(cls, sub);
    const int n = counts_[cls][sub];
    if (n == 0) return vals_.Sub[cls][sub];
    const auto& list = vals_.Lists[ListOfCls(cls)];
    const int first = FirstPos(cls, sub);
    double v = 0;
    for (int e = 0; e < n; ++e) v += Entry(list, first + e);
    return v;
}

void TLibAllocYear::SetSubClsVal(int cls, int sub, double value) {
    CheckSub(cls, sub);
    const int n = counts_[cls][sub];
    if (n == 0) {
        vals_.Sub[cls][sub] = value;
        return;
    }
    const auto& shares = lists_[ListOfCls(cls)];
    auto& list = vals_.Lists[ListOfCls(cls)];
    const int first = FirstPos(cls, sub);
    double total = 0;
    for (int e = 0; e < n; ++e) total += Pos(Entry(shares, first + e));
    for (int e = 0; e < n; ++e) {
        const double part = total > 0 ? value * Pos(Entry(shares, first + e)) / total : (e == 0 ? value : 0.0);
        PutEntry(list, first + e, part);
    }
}

double TLibAllocYear::GetSubCls2Val(int cls, int sub, int entry) const {
    CheckEntry(cls, sub, entry);
    return Entry(vals_.Lists[ListOfCls(cls)], FirstPos(cls, sub) + entry);
}

void TLibAllocYear::SetSubCls2Val(int cls, int sub, int entry, double value) {
    CheckEntry(cls, sub, entry);
    PutEntry(vals_.Lists[ListOfCls(cls)], FirstPos(cls, sub) + entry, value);
}

double TLibAllocYear::GetTotalVal() const {
    double v = 0;
    for (int c = 0; c < ClsCount; ++c) v += GetClsVal(c);
    return v;
}

bool TLibAllocYear::SharesOK() const {
    double t = 0;
    for (double v : cls_) t += Pos(v);
    double r = RoundShare(t);
    if (r != 0 && r != 1) return false;
    for (int c = 0; c < ClsCount; ++c) {
        t = 0;
        for (double v : sub_[c]) t += Pos(v);
        r = RoundShare(t);
        if (r != 0 && r != 1) return false;
    }
    for (int c = 0; c < ClsCount; ++c) {
        const auto& list = lists_[ListOfCls(c)];
        for (int s = 0; s < SubClsCount; ++s) {
            const int n = counts_[c][s];
            if (n == 0) continue;
            const double own = RoundShare(Pos(sub_[c][s]));
            const int first = FirstPos(c, s);
            double u = 0;
            for (int e = 0; e < n; ++e) u += Pos(Entry(list, first + e));
            const double ru = RoundShare(u);
            if (ru != 0 && ru != own) return false;
        }
    }
    return true;
}

bool TLibAllocYear::FixShares() {
    bool ok = true;

    // 1. Every list to the grand total of the counts.
    const auto n = std::size_t(SubCls2Total());
    for (auto& l : lists_)
        if (l.size() != n) {
            l.resize(n, 0.0);
            ok = false;
        }

    // 2.-4. Classes.
    double total = 0;
    std::array<double, ClsCount> pct{};
    for (int c = 0; c < ClsCount; ++c) {
        if (NeedsZero(cls_[c])) {
            cls_[c] = 0;
            ok = false;
        }
        total += cls_[c];
        pct[c] = cls_[c] * 100;
    }
    const double rt = RoundShare(total);
    if (rt == 0) {
        cls_[0] = 1;
        ok = false;
    } else if (rt != 1) {
        for (int c = 0; c < ClsCount; ++c) cls_[c] = pct[c] / 100;
        ok = false;
    }

    // 5. Sub-classes.
    for (int c = 0; c < ClsCount; ++c) {
        const double share = cls_[c];
        auto& row = sub_[c];
        double t = 0;
        TSubRow sp{};
        for (int s = 0; s < SubClsCount; ++s) {
            if (NeedsZero(row[s])) {
                row[s] = 0;
                ok = false;
            }
            t += row[s];
            sp[s] = row[s] * 100;
        }
        t = RoundShare(t);
        if (share == 0 && t != 0) {
            row.fill(0);
            ok = false;
        } else if (share > 0 && t == 0) {
            row[0] = 1;
            ok = false;
        } else if (t > 0 && t != 1) {
            for (int s = 0; s < SubClsCount; ++s) row[s] = sp[s] / 100;
            ok = false;
        }
    }

    // 6. Third level.
    for (int c = 0; c < ClsCount; ++c) {
        auto& list = lists_[ListOfCls(c)];
        for (int s = 0; s < SubClsCount; ++s) {
            const int cnt = counts_[c][s];
            if (cnt == 0) continue;
            const std::size_t first = std::size_t(FirstPos(c, s));
            const double own = RoundShare(sub_[c][s]);
            if (own == 0) {
                for (int e = 0; e < cnt; ++e) {
                    double& v = list[first + std::size_t(e)];
                    if (v != 0) ok = false;
                    v = 0;
                }
                continue;
            }
            double u = 0;
            std::vector<double> ep(std::size_t(cnt), 0.0);
            for (int e = 0; e < cnt; ++e) {
                double& v = list[first + std::size_t(e)];
                if (NeedsZero(v)) {
                    v = 0;
                    ok = false;
                }
                u += v;
                ep[std::size_t(e)] = v * 100 / own;
            }
            u = RoundShare(u);
            if (u == 0) {
                list[first] = own;
                ok = false;
            } else if (u != own) {
                for (int e = 0; e < cnt; ++e) list[first + std::size_t(e)] = ep[std::size_t(e)] * own / 100;
                ok = false;
            }
        }
    }

    // 7. Amounts laid out afresh over the repaired lists.
    if (!ok) RebuildAmounts();
    return ok;
}

void TLibAllocYear::RebuildAmounts() {
    TAmounts fresh;
    for (int l = 0; l < 3; ++l) fresh.Lists[l].assign(lists_[l].size(), 0.0);
    for (int c = 0; c < ClsCount; ++c) {
        const int l = ListOfCls(c);
        for (int s = 0; s < SubClsCount; ++s) {
            const int cnt = counts_[c][s];
            if (cnt == 0) {
                fresh.Sub[c][s] = vals_.Sub[c][s];
                continue;
            }
            const int first = FirstPos(c, s);
            for (int e = 0; e < cnt; ++e) {
                const auto pos = std::size_t(first + e);
                if (pos < fresh.Lists[l].size()) fresh.Lists[l][pos] = Entry(vals_.Lists[l], first + e);
            }
        }
    }
    vals_ = std::move(fresh);
}

TLibAllocYear TLibAllocYear::GetEvenlyAllocation() {
    static constexpr std::array<int, ClsCount> kAll{0, 1, 2, 3, 4, 5};
    return GetEvenlyAllocation(kAll);
}

TLibAllocYear TLibAllocYear::GetEvenlyAllocation(std::span<const int> classes) {
    TLibAllocYear y;
    std::array<bool, ClsCount> chosen{};
    int m = 0;
    for (int c : classes) {
        y.CheckCls(c);
        if (!chosen[c]) ++m;
        chosen[c] = true;
    }
    for (int c = 0; c < ClsCount; ++c) {
        if (!chosen[c]) continue;
        y.cls_[c] = 1.0 / m;
        for (int s = 0; s < SubClsCount; ++s) {
            const double share = 1.0 / SubClsCount;
            y.sub_[c][s] = share;
            const int cnt = y.counts_[c][s];
            for (int e = 0; e < cnt; ++e) y.SetSubCls2Share(c, s, e, share / cnt);
        }
    }
    return y;
}

void TLibAllocYear::CalcAlloc(double total) {
    for (int l = 0; l < 3; ++l) vals_.Lists[l].assign(lists_[l].size(), 0.0);
    for (int c = 0; c < ClsCount; ++c) {
        const auto& shares = lists_[ListOfCls(c)];
        auto& amounts = vals_.Lists[ListOfCls(c)];
        for (int s = 0; s < SubClsCount; ++s) {
            const int cnt = counts_[c][s];
            if (cnt == 0) {
                vals_.Sub[c][s] = total * cls_[c] * sub_[c][s];
                continue;
            }
            vals_.Sub[c][s] = 0;
            const int first = FirstPos(c, s);
            for (int e = 0; e < cnt; ++e) PutEntry(amounts, first + e, total * cls_[c] * Entry(shares, first + e));
        }
    }
}

} // namespace kv
