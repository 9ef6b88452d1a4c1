#include <algorithm>
#include <cmath>
#include <set>

#include "decl/KvModelFormat.h"
#include "parties/KvFnParty.h"

namespace kv {

namespace {

constexpr double kTolerance = 0.0001;

double ShareOf(const TSharesList& l, std::int32_t id) {
    const TPayer* p = l.FindByPartyID(id);
    return p ? p->Code : 0;
}

} // namespace

void TSharesList::Delete(int pos) {
    if (pos < 0 || pos >= Count()) return;
    Items.erase(Items.begin() + pos);
}

int TSharesList::Find(const TParty* party) const {
    for (int i = 0; i < Count(); ++i)
        if (Items[std::size_t(i)].Party == party) return i;
    return -1;
}

bool TSharesList::Validate() const {
    std::set<std::int32_t> seen;
    for (const TPayer& p : Items)
        if (!seen.insert(p.PartyID).second || !(p.Code >= 0 && p.Code <= 1)) return false;
    return Items.empty() || std::abs(Sum() - 1) <= kTolerance;
}

void TSharesList::SetEqualShares() {
    for (TPayer& p : Items) p.Code = 1.0 / double(Items.size());
}

bool TSharesList::FixShares() {
    bool ok = true;
    double top = 0;
    for (TPayer& p : Items) {
        if (!(p.Code >= 0 && std::isfinite(p.Code))) {
            p.Code = 0;
            ok = false;
        }
        top = std::max(top, p.Code);
    }
    double sum = Sum();
    if (!std::isfinite(sum)) { // finite shares whose total overflows
        for (TPayer& p : Items) p.Code /= top;
        sum = Sum();
    }
    if (Items.empty()) return ok;
    if (sum == 0) {
        SetEqualShares();
        return false;
    }
    if (std::abs(sum - 1) > kTolerance) {
        for (TPayer& p : Items) p.Code /= sum;
        return false;
    }
    return ok;
}

bool TSharesList::FixSharesExcept(std::int32_t partyID) {
    auto kept = std::find_if(Items.begin(), Items.end(), [&](const TPayer& p) { return p.PartyID == partyID; });
    if (kept == Items.end()) return FixShares();
    bool ok = true;
    if (!(kept->Code >= 0 && kept->Code <= 1)) {
        kept->Code = kept->Code > 1 ? 1 : 0;
        ok = false;
    }
    double others = 0;
    int count = 0;
    for (TPayer& p : Items) {
        if (&p == &*kept) continue;
        if (!(p.Code >= 0 && std::isfinite(p.Code))) {
            p.Code = 0;
            ok = false;
        }
        others += p.Code;
        ++count;
    }
    const double room = 1 - kept->Code;
    if (count == 0) {
        if (std::abs(room) > kTolerance) kept->Code = 1, ok = false;
        return ok;
    }
    if (std::abs(others - room) <= kTolerance) return ok;
    for (TPayer& p : Items)
        if (&p != &*kept) p.Code = others == 0 ? room / count : p.Code * room / others;
    return false;
}

void TSharesList::CopySharesFrom(const TSharesList& other) {
    for (TPayer& p : Items) p.Code = ShareOf(other, p.PartyID);
}

double TSharesList::ShareVal(std::int32_t partyID, double value) const { return value * ShareOf(*this, partyID); }

double TSharesList::JointShareVal(std::int32_t partyID1, std::int32_t partyID2, double value) const {
    const double s2 = partyID2 == partyID1 ? 0 : ShareOf(*this, partyID2);
    return value * (ShareOf(*this, partyID1) + s2);
}

std::int32_t TSharesList::LastLifeExp() const {
    std::int32_t last = 0;
    for (const TPayer& p : Items)
        if (p.Party) last = std::max(last, p.Party->LifeExpYear());
    return last;
}

TParty* TSharesList::GetPrincParty() const {
    const TPayer* best = nullptr;
    for (const TPayer& p : Items)
        if (!best || p.Code > best->Code) best = &p;
    return best ? best->Party : nullptr;
}

int TSharesList::PrincPartyCountByShare() const {
    if (Items.empty()) return 0;
    double top = Items.front().Code;
    for (const TPayer& p : Items) top = std::max(top, p.Code);
    return int(std::count_if(Items.begin(), Items.end(), [&](const TPayer& p) { return p.Code == top; }));
}

int TSharesList::ShareCount() const {
    return int(std::count_if(Items.begin(), Items.end(), [](const TPayer& p) { return p.Code > 0; }));
}

std::string TSharesList::AsString() const {
    std::string s;
    for (const TPayer& p : Items)
        s += (s.empty() ? "" : ",") + IntToModelText(p.PartyID) + ":" + FloatToModelText(p.Code);
    return s;
}

bool TSharesList::SetAsString(const std::string& text, TParty* (*resolve)(std::int32_t, const void*), const void* ctx) {
    std::vector<TPayer> read;
    std::size_t from = 0;
    while (!text.empty() && from <= text.size()) {
        const std::size_t to = std::min(text.find(',', from), text.size());
        const std::string_view piece = std::string_view(text).substr(from, to - from);
        const std::size_t colon = piece.find(':');
        std::int32_t id = 0;
        double share = 0;
        if (colon == std::string_view::npos || !TryModelTextToInt(piece.substr(0, colon), id) ||
            !TryModelTextToFloat(piece.substr(colon + 1), share))
            return false;
        read.push_back({resolve ? resolve(id, ctx) : nullptr, id, share});
        from = to + 1;
    }
    Items = std::move(read);
    return true;
}

void TSharesList::SumLists(const TSharesList& a, const TSharesList& b) {
    std::vector<TPayer> sum;
    for (const TSharesList* l : {&a, &b})
        for (const TPayer& p : l->Items) {
            auto it = std::find_if(sum.begin(), sum.end(), [&](const TPayer& s) { return s.PartyID == p.PartyID; });
            if (it == sum.end())
                sum.push_back(p);
            else
                it->Code += p.Code;
        }
    Items = std::move(sum);
}

int TSharesList::CompareByPartyId(const TPayer& a, const TPayer& b) {
    return (a.PartyID > b.PartyID) - (a.PartyID < b.PartyID);
}

void TSharesList::SortByPartyId() {
    std::stable_sort(Items.begin(), Items.end(),
                     [](const TPayer& a, const TPayer& b) { return CompareByPartyId(a, b) < 0; });
}

} // namespace kv
