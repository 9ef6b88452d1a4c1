// Ownership lookups over a loaded solution: which items of given entries a
// party owns, and a party's share of a corporation or a trust.
#pragma once

#include <cstdint>
#include <span>
#include <vector>

#include "items/KvFnFinItems.h"

namespace kv {

class TModelData;
class TSharesList;

using TItemRefs = std::vector<TFinItem*>;

// Code bits of a share entry.
inline constexpr int kOwnBit1 = 1, kOwnBit2 = 2, kOwnBit4 = 4;

// Items whose entry identifier is in ids and that are not excluded (unless
// flag is on): top-level items in order, each in pre-order. A null list
// means the model's ResultList.
void FindByEntryID(TModelData& model, TItemRefs* list, std::span<const std::int32_t> ids, std::uint8_t flag);

// FindByEntryID, then items the party does not own are removed (walking from
// the last to the first).
void FindByEntryIDOwned(TModelData& model, TItemRefs* list, std::span<const std::int32_t> ids, std::uint8_t flag,
                        std::int32_t partyID);
// The first such item, or null.
TFinItem* FindByEntryIDOwned(TModelData& model, std::span<const std::int32_t> ids, std::uint8_t flag,
                             std::int32_t partyID);
// Items that at least one of the parties owns.
void FindByEntryIDOwnedX(TModelData& model, TItemRefs* list, std::span<const std::int32_t> ids, std::uint8_t flag,
                         std::span<const std::int32_t> partyIDs);

// Items of exactly that class / of that class or a class derived from it,
// owned by the party.
void FindByClassOwned(TModelData& model, TItemRefs& list, const TFinItemClass& cls, std::int32_t partyID);
void FindByClassInheritsOwned(TModelData& model, TItemRefs& list, const TFinItemClass& cls, std::int32_t partyID);

// The list test: whether an ownership list gives the party the item. With
// settings.AnyParty, party -1 owns every list.
bool ListOwnedBy(const TSharesList* list, std::int32_t partyID, bool whole, bool joint, bool bit1Switch,
                 const TLibrarySettings& settings);
// The single-item test, with its three switches.
bool ItemOwnedBy(const TFinItem& item, std::int32_t partyID, bool bit1Switch = false, bool jointSwitch = false,
                 bool wholeSwitch = false);

// Fraction (0..1, not capped) of the corporation's common shares the
// shareholder holds; 0 when the corporation has no common shares.
double GetProcCommonSharesOwned(TModelData& model, std::int32_t corpID, std::int32_t holderID);

// The capital percentage the trust gives the beneficiary key (first capital
// beneficiary item that names it), 0 when none does.
std::int32_t GetPartyTrustBenefCapitalPercent(TModelData& model, std::int32_t benefKey, std::int32_t trustID);

} // namespace kv
