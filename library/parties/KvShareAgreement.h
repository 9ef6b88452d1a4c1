// A shareholder agreement of a corporation (TCrpShAgr): how the shares of a
// shareholder who dies or leaves are bought, and who is bound by it.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

namespace kv {

struct TCrpShAgr {
    enum TBuyout : std::uint8_t { None = 0, CrossPurchase = 1, Redemption = 2 };
    TBuyout Buyout = None;
    std::int32_t ShareClassID = 0; // the TCorpShare item it covers, 0 for all
    bool InsuranceFunded = false;
    std::vector<std::int32_t> Shareholders; // party identifiers bound by it

    bool Binds(std::int32_t partyID) const;
    // "buyout;class;funded;id id id" in model-file integers.
    std::string Encode() const;
    // False, and the agreement unchanged, for a malformed text.
    bool Decode(const std::string& text);
};

} // namespace kv
