#include "model/KvFnOwnership.h"

#include <algorithm>
#include <cmath>
#include <unordered_map>

#include "KvSettings.h"
#include "entries/KvFnEntries.h"
#include "items/KvFnShareItems.h"
#include "model/KvFnModelData.h"

namespace kv {

namespace {

constexpr std::int32_t kPrimaryAccountEntry = 948;

int Bits(double code) {
    if (!std::isfinite(code)) return 0;
    return static_cast<int>(static_cast<long long>(code) & 7);
}

bool RoleIsOne(const TPayer& p) { return p.Party && p.Party->Role == 1; }

// Top-level items in order, each in pre-order.
template <class F>
void Walk(const TFinItemList& items, F&& visit) {
    std::vector<TFinItem*> stack;
    for (auto it = items.rbegin(); it != items.rend(); ++it) stack.push_back(it->get());
    while (!stack.empty()) {
        TFinItem* item = stack.back();
        stack.pop_back();
        visit(item);
        for (auto c = item->Children.rbegin(); c != item->Children.rend(); ++c) stack.push_back(c->get());
    }
}

bool WholeFlag(const TFinItem& item, bool wholeSwitch) {
    if (item.Entry && item.Entry->GroupID == 0) return true;
    if (item.InheritsFrom(TAssetHeader::Class)) return true;
    if (item.EntryID() == kPrimaryAccountEntry) return true;
    if (item.Parent && item.Parent->EntryID() == kPrimaryAccountEntry) return true;
    return wholeSwitch;
}

TItemRefs& Target(TModelData& model, TItemRefs* list) { return list ? *list : model.ResultList; }

} // namespace

void FindByEntryID(TModelData& model, TItemRefs* list, std::span<const std::int32_t> ids, std::uint8_t flag) {
    TItemRefs& out = Target(model, list);
    out.clear();
    Walk(model.Items(), [&](TFinItem* item) {
        if (std::find(ids.begin(), ids.end(), item->EntryID()) == ids.end()) return;
        if (flag || !item->IsExclude()) out.push_back(item);
    });
}

bool ListOwnedBy(const TSharesList* list, std::int32_t partyID, bool whole, bool joint, bool bit1Switch,
                 const TLibrarySettings& settings) {
    if (!list || list->Empty()) return true; // everybody's
    if (partyID == -1 && settings.AnyParty) return true;
    const auto& entries = list->Items;

    if (joint) {
        const auto jointEntries = std::count_if(entries.begin(), entries.end(),
                                                [](const TPayer& p) { return Bits(p.Code) & (kOwnBit2 | kOwnBit4); });
        if (jointEntries >= 2) {
            // Party -1 holds no entry of its own, so the joint rule never gives it the item.
            const bool holds = std::any_of(entries.begin(), entries.end(), [&](const TPayer& p) {
                return p.Party && p.Party->ID == partyID && (Bits(p.Code) & kOwnBit2);
            });
            if (!holds) return false;
            for (const TPayer& p : entries)
                if ((Bits(p.Code) & (kOwnBit2 | kOwnBit4)) && RoleIsOne(p)) return false;
            return true;
        }
    }

    const TPayer* match = nullptr;
    for (const TPayer& p : entries) {
        const int bits = Bits(p.Code);
        if (partyID == -1) {
            if (bits & kOwnBit4) return true;
            continue;
        }
        if (p.Party && p.Party->ID == partyID && ((bits & kOwnBit2) || ((bits & kOwnBit1) && bit1Switch))) {
            match = &p;
            break;
        }
    }
    if (!match) return false;
    if (whole || RoleIsOne(*match)) return true;
    for (const TPayer& p : entries)
        if (&p != match && RoleIsOne(p)) return false;
    return true;
}

bool ItemOwnedBy(const TFinItem& item, std::int32_t partyID, bool bit1Switch, bool jointSwitch, bool wholeSwitch) {
    const bool whole = WholeFlag(item, wholeSwitch);
    const bool joint = jointSwitch && item.IsJoint();
    if (ListOwnedBy(item.OwnershipList(), partyID, whole, joint, bit1Switch, item.Settings())) return true;
    const auto owner = item.OwnerPartyID();
    return owner && *owner == partyID && !joint;
}

void FindByEntryIDOwned(TModelData& model, TItemRefs* list, std::span<const std::int32_t> ids, std::uint8_t flag,
                        std::int32_t partyID) {
    FindByEntryID(model, list, ids, flag);
    TItemRefs& out = Target(model, list);
    std::erase_if(out, [&](const TFinItem* item) { return !ItemOwnedBy(*item, partyID); });
}

TFinItem* FindByEntryIDOwned(TModelData& model, std::span<const std::int32_t> ids, std::uint8_t flag,
                             std::int32_t partyID) {
    TItemRefs found;
    FindByEntryIDOwned(model, &found, ids, flag, partyID);
    return found.empty() ? nullptr : found.front();
}

void FindByEntryIDOwnedX(TModelData& model, TItemRefs* list, std::span<const std::int32_t> ids, std::uint8_t flag,
                         std::span<const std::int32_t> partyIDs) {
    FindByEntryID(model, list, ids, flag);
    TItemRefs& out = Target(model, list);
    std::erase_if(out, [&](const TFinItem* item) {
        return std::none_of(partyIDs.begin(), partyIDs.end(), [&](std::int32_t id) { return ItemOwnedBy(*item, id); });
    });
}

void FindByClassOwned(TModelData& model, TItemRefs& list, const TFinItemClass& cls, std::int32_t partyID) {
    list.clear();
    Walk(model.Items(), [&](TFinItem* item) {
        if (&item->ClassType() == &cls && ItemOwnedBy(*item, partyID)) list.push_back(item);
    });
}

void FindByClassInheritsOwned(TModelData& model, TItemRefs& list, const TFinItemClass& cls, std::int32_t partyID) {
    list.clear();
    Walk(model.Items(), [&](TFinItem* item) {
        if (item->InheritsFrom(cls) && ItemOwnedBy(*item, partyID)) list.push_back(item);
    });
}

double GetProcCommonSharesOwned(TModelData& model, std::int32_t corpID, std::int32_t holderID) {
    TItemRefs classes;
    FindByClassOwned(model, classes, TCorpShare::Class, corpID);
    double common = 0;
    for (const TFinItem* item : classes) {
        const auto* share = static_cast<const TCorpShare*>(item);
        if (share->IsAsCommon()) common += share->ShareCount;
    }
    if (common <= 0) return 0;

    // Share classes indexed in one walk, the first in walking order winning as
    // TCCShares::ShareClass finds it: a lookup per holding would walk the whole
    // model for each of them.
    std::unordered_map<std::int32_t, const TCorpShare*> shareClasses;
    Walk(model.Items(), [&](TFinItem* item) {
        if (item->InheritsFrom(TCorpShare::Class)) shareClasses.emplace(item->ID, static_cast<const TCorpShare*>(item));
    });

    TItemRefs holdings;
    FindByClassOwned(model, holdings, TCCShares::Class, holderID);
    double held = 0;
    for (const TFinItem* item : holdings) {
        const auto* holding = static_cast<const TCCShares*>(item);
        const auto found = shareClasses.find(holding->ShareClassID);
        const TCorpShare* shareClass = found == shareClasses.end() ? nullptr : found->second;
        const TCorporation* corp = holding->FindCorporation();
        if (shareClass && corp && corp->ID == corpID && shareClass->IsAsCommon()) held += holding->SharesHeld;
    }
    return held / common;
}

std::int32_t GetPartyTrustBenefCapitalPercent(TModelData& model, std::int32_t benefKey, std::int32_t trustID) {
    TItemRefs benefs;
    FindByClassInheritsOwned(model, benefs, TCapitalTrBenef::Class, trustID);
    for (const TFinItem* item : benefs) {
        const auto* b = static_cast<const TCapitalTrBenef*>(item);
        if (b->BenefKey == benefKey) return b->CapitalPercent;
    }
    return 0;
}

} // namespace kv
