#include "parties/KvPartyLists.h"

#include <algorithm>
#include <cmath>

#include "decl/KvModelFormat.h"

namespace kv {

int TPartyList::IndexOfID(std::int32_t id) const {
    for (std::size_t i = 0; i < size(); ++i)
        if ((*this)[i] && (*this)[i]->ID == id) return static_cast<int>(i);
    return -1;
}

TParty* TPartyList::ByID(std::int32_t id) const {
    const int i = IndexOfID(id);
    return i < 0 ? nullptr : (*this)[std::size_t(i)];
}

bool TPartyList::AddUnique(TParty* p) {
    if (std::find(begin(), end(), p) != end()) return false;
    push_back(p);
    return true;
}

int TParticipantList::IndexOfID(std::int32_t id) const {
    for (std::size_t i = 0; i < size(); ++i)
        if ((*this)[i]->ID == id) return static_cast<int>(i);
    return -1;
}

TParticipant* TParticipantList::ByID(std::int32_t id) const {
    const int i = IndexOfID(id);
    return i < 0 ? nullptr : (*this)[std::size_t(i)].get();
}

TParticipant* TParticipantList::ByUID(const TUIDLink& link) const {
    for (const auto& p : *this)
        if (p->LinkedToUID(link)) return p.get();
    return nullptr;
}

std::int32_t TParticipantList::MaxLifeExpYear() const {
    std::int32_t last = 0;
    for (const auto& p : *this)
        if (p->IsRealParty()) last = std::max(last, p->LifeExpYear());
    return last;
}

TRelToParty::TRel TRelToParty::Inverse(TRel r) { return r == Child ? Parent : r == Parent ? Child : r; }

void TRelList::SetRel(std::int32_t partyID, TRelToParty::TRel rel) {
    for (TRelToParty& r : *this)
        if (r.PartyID == partyID) {
            r.Rel = rel;
            return;
        }
    push_back({partyID, rel});
}

int TRelList::RelTo(std::int32_t partyID) const {
    for (const TRelToParty& r : *this)
        if (r.PartyID == partyID) return r.Rel;
    return -1;
}

void TRelList::Remove(std::int32_t partyID) {
    std::erase_if(*this, [&](const TRelToParty& r) { return r.PartyID == partyID; });
}

std::string TRelList::Encode() const {
    std::string s;
    for (const TRelToParty& r : *this)
        s += (s.empty() ? "" : ",") + IntToModelText(r.PartyID) + ":" + IntToModelText(r.Rel);
    return s;
}

void TRelList::Decode(const std::string& text) {
    clear();
    std::size_t from = 0;
    while (from < text.size()) {
        const std::size_t to = std::min(text.find(',', from), text.size());
        const std::string_view piece = std::string_view(text).substr(from, to - from);
        const std::size_t colon = piece.find(':');
        std::int32_t id = 0, rel = 0;
        if (colon != std::string_view::npos && TryModelTextToInt(piece.substr(0, colon), id) &&
            TryModelTextToInt(piece.substr(colon + 1), rel) && rel >= 0 && rel <= TRelToParty::Sibling)
            SetRel(id, static_cast<TRelToParty::TRel>(rel));
        from = to + 1;
    }
}

double TBenefList::Total(bool contingent) const {
    double t = 0;
    for (const TBenef& b : *this)
        if (b.Contingent == contingent) t += b.Percent;
    return t;
}

bool TBenefList::Validate() const {
    for (bool contingent : {false, true}) {
        const bool any = std::any_of(begin(), end(), [&](const TBenef& b) { return b.Contingent == contingent; });
        if (any && !(std::abs(Total(contingent) - 100) <= 0.01)) return false;
    }
    return std::all_of(begin(), end(), [](const TBenef& b) { return b.Percent >= 0 && b.Percent <= 100; });
}

const TBenef* TBenefList::FindByPartyID(std::int32_t id, bool contingent) const {
    for (const TBenef& b : *this)
        if (b.PartyID == id && b.Contingent == contingent) return &b;
    return nullptr;
}

double TIntHashSharesList::Get(std::int32_t key) const {
    const auto it = shares_.find(key);
    return it == shares_.end() ? 0 : it->second;
}

double TIntHashSharesList::Sum() const {
    double s = 0;
    for (const std::int32_t k : Keys()) s += Get(k); // fixed order: the same total on every run
    return s;
}

std::vector<std::int32_t> TIntHashSharesList::Keys() const {
    std::vector<std::int32_t> keys;
    keys.reserve(shares_.size());
    for (const auto& [k, v] : shares_) keys.push_back(k);
    std::sort(keys.begin(), keys.end());
    return keys;
}

void TIntHashSharesList::FromSharesList(const TSharesList& l) {
    shares_.clear();
    for (const TPayer& p : l.Items) shares_[p.PartyID] += p.Code;
}

} // namespace kv
