// Typed lists of parties, the relations between them, beneficiary
// designations and shares keyed by an integer.
#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <unordered_map>
#include <vector>

#include "parties/KvFnParty.h"

namespace kv {

// Parties referred to, not owned, in the order added.
class TPartyList : public std::vector<TParty*> {
public:
    int IndexOfID(std::int32_t id) const;
    TParty* ByID(std::int32_t id) const;
    bool AddUnique(TParty* p); // false when already held
};

// All parties of a solution, owned, in file order.
class TParticipantList : public std::vector<std::unique_ptr<TParticipant>> {
public:
    int IndexOfID(std::int32_t id) const;
    TParticipant* ByID(std::int32_t id) const;
    // The party linked to that party of another client file, or null.
    TParticipant* ByUID(const TUIDLink& link) const;
    // The last life-expectancy year of the real parties, 0 without any.
    std::int32_t MaxLifeExpYear() const;
};

// One party's relation to another.
struct TRelToParty {
    enum TRel : std::uint8_t { Other = 0, Spouse = 1, Child = 2, Parent = 3, Sibling = 4 };
    std::int32_t PartyID = 0;
    TRel Rel = Other;
    // The relation seen from the other party (child <-> parent).
    static TRel Inverse(TRel r);
};

// A party's relations, one per other party.
class TRelList : public std::vector<TRelToParty> {
public:
    void SetRel(std::int32_t partyID, TRelToParty::TRel rel); // replaces an earlier one
    int RelTo(std::int32_t partyID) const;                    // -1 when none
    void Remove(std::int32_t partyID);
    // "id:rel,id:rel"; Decode skips malformed pieces and keeps the last of a party.
    std::string Encode() const;
    void Decode(const std::string& text);
};

// A beneficiary designation: who receives what percentage, first or
// contingently (when the first ones are gone).
struct TBenef {
    std::int32_t PartyID = 0;
    double Percent = 0; // 0..100
    bool Contingent = false;
};

class TBenefList : public std::vector<TBenef> {
public:
    double Total(bool contingent) const;
    // Each group, when it has members, totals 100 within 0.01.
    bool Validate() const;
    const TBenef* FindByPartyID(std::int32_t id, bool contingent) const;
};

// Shares keyed by an integer (a party, a class, a year), 0 when absent.
class TIntHashSharesList {
public:
    double Get(std::int32_t key) const;
    void Put(std::int32_t key, double share) { shares_[key] = share; }
    void Add(std::int32_t key, double share) { shares_[key] += share; }
    void Delete(std::int32_t key) { shares_.erase(key); }
    bool Exists(std::int32_t key) const { return shares_.contains(key); }
    int Count() const { return static_cast<int>(shares_.size()); }
    void Clear() { shares_.clear(); }
    double Sum() const;
    std::vector<std::int32_t> Keys() const; // ascending
    // The shares of an ownership list, by party identifier.
    void FromSharesList(const TSharesList& l);

private:
    std::unordered_map<std::int32_t, double> shares_;
};

} // namespace kv
