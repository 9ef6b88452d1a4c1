// Items through which parties hold parts of corporations and trusts: share
// classes of a corporation, shares held, capital beneficiaries of a trust.
#pragma once

#include <cstdint>
#include <string>

#include "items/KvFnFinItems.h"

namespace kv {

class TCorporation;

// One share class of the corporation that owns the item; its own share class.
class TCorpShare : public TFinItem {
    KV_ITEM_CLASS_BODY(TCorpShare, TFinItem)
public:
    std::string ShareClassName; // "ShareClass"
    double ShareCount = 0;      // "ShareCount": shares issued
    bool AsCommon = false;      // "AsCommon" = "1"

    bool IsAsCommon() const { return AsCommon; }
    const TFinItem* ShareClass() const override { return this; }
    void DecodeSpecProps() override;
    void EncodeSpecProps() override;
};

// A holding of the party that owns the item.
class TCCShares : public TFinItem {
    KV_ITEM_CLASS_BODY(TCCShares, TFinItem)
public:
    std::int32_t CorpID = 0;       // "CorpID": the corporation's party identifier
    std::int32_t ShareClassID = 0; // "ShareClassID": item identifier of the TCorpShare
    double SharesHeld = 0;         // "SharesHeld"

    // The TCorpShare item of ShareClassID, searched over all items of the model.
    const TFinItem* ShareClass() const override;
    // The party of CorpID when it is a corporation (or derived), else null.
    const TCorporation* FindCorporation() const;
    void DecodeSpecProps() override;
    void EncodeSpecProps() override;
};

// A trust's capital beneficiary and the beneficiary's percentage.
class TCapitalTrBenef : public TFinItem {
    KV_ITEM_CLASS_BODY(TCapitalTrBenef, TFinItem)
public:
    std::int32_t BenefKey = 0;       // "BenefKey"
    std::int32_t CapitalPercent = 0; // "CapitalPercent"
    void DecodeSpecProps() override;
    void EncodeSpecProps() override;
};

// Heads a group of assets; counts as wholly owned in ownership tests.
class TAssetHeader : public TFinItem {
    KV_ITEM_CLASS_BODY(TAssetHeader, TFinItem)
};

} // namespace kv
