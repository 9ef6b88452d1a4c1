#include "items/KvFnShareItems.h"

#include <vector>

#include "items/KvPropTable.h"
#include "parties/KvFnParty.h"

namespace kv {

KV_ITEM_CLASS_DEFINE(TCorpShare, TFinItem)
KV_ITEM_CLASS_DEFINE(TCCShares, TFinItem)
KV_ITEM_CLASS_DEFINE(TCapitalTrBenef, TFinItem)
KV_ITEM_CLASS_DEFINE(TAssetHeader, TFinItem)

namespace {
const TPropDesc<TCorpShare> kCorpShareProps[] = {
    TextProp("ShareClass", &TCorpShare::ShareClassName),
    FloatProp("ShareCount", &TCorpShare::ShareCount),
    FlagProp("AsCommon", &TCorpShare::AsCommon, "1"),
};
const TPropDesc<TCCShares> kCCSharesProps[] = {
    IntProp("CorpID", &TCCShares::CorpID),
    IntProp("ShareClassID", &TCCShares::ShareClassID),
    FloatProp("SharesHeld", &TCCShares::SharesHeld),
};
const TPropDesc<TCapitalTrBenef> kCapitalTrBenefProps[] = {
    IntProp("BenefKey", &TCapitalTrBenef::BenefKey),
    IntProp("CapitalPercent", &TCapitalTrBenef::CapitalPercent),
};
} // namespace

void TCorpShare::DecodeSpecProps() {
    TFinItem::DecodeSpecProps();
    DecodeProps(*this, SpecProps, kCorpShareProps);
}

void TCorpShare::EncodeSpecProps() {
    TFinItem::EncodeSpecProps();
    EncodeProps(*this, SpecProps, kCorpShareProps);
}

const TFinItem* TCCShares::ShareClass() const {
    if (!Model) return nullptr;
    // All items at any depth: top-level items in order, each in pre-order.
    std::vector<const TFinItem*> stack;
    for (auto it = Model->Items().rbegin(); it != Model->Items().rend(); ++it) stack.push_back(it->get());
    while (!stack.empty()) {
        const TFinItem* item = stack.back();
        stack.pop_back();
        if (item->ID == ShareClassID && item->InheritsFrom(TCorpShare::Class)) return item;
        for (auto c = item->Children.rbegin(); c != item->Children.rend(); ++c) stack.push_back(c->get());
    }
    return nullptr;
}

const TCorporation* TCCShares::FindCorporation() const {
    return Model ? dynamic_cast<const TCorporation*>(Model->GetParticipantByID(CorpID)) : nullptr;
}

void TCCShares::DecodeSpecProps() {
    TFinItem::DecodeSpecProps();
    DecodeProps(*this, SpecProps, kCCSharesProps);
}

void TCCShares::EncodeSpecProps() {
    TFinItem::EncodeSpecProps();
    EncodeProps(*this, SpecProps, kCCSharesProps);
}

void TCapitalTrBenef::DecodeSpecProps() {
    TFinItem::DecodeSpecProps();
    DecodeProps(*this, SpecProps, kCapitalTrBenefProps);
}

void TCapitalTrBenef::EncodeSpecProps() {
    TFinItem::EncodeSpecProps();
    EncodeProps(*this, SpecProps, kCapitalTrBenefProps);
}

} // namespace kv
