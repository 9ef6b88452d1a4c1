#include "parties/KvShareAgreement.h"

#include <algorithm>
#include <sstream>

#include "decl/KvModelFormat.h"

namespace kv {

bool TCrpShAgr::Binds(std::int32_t partyID) const {
    return std::find(Shareholders.begin(), Shareholders.end(), partyID) != Shareholders.end();
}

std::string TCrpShAgr::Encode() const {
    std::string s =
        IntToModelText(Buyout) + ";" + IntToModelText(ShareClassID) + ";" + (InsuranceFunded ? "1" : "0") + ";";
    for (std::size_t i = 0; i < Shareholders.size(); ++i) s += (i ? " " : "") + IntToModelText(Shareholders[i]);
    return s;
}

bool TCrpShAgr::Decode(const std::string& text) {
    std::vector<std::string> parts;
    std::stringstream in(text);
    for (std::string part; std::getline(in, part, ';');) parts.push_back(part);
    if (text.ends_with(';')) parts.emplace_back();
    if (parts.size() != 4) return false;
    std::int32_t buyout = 0, cls = 0, funded = 0;
    if (!TryModelTextToInt(parts[0], buyout) || buyout < 0 || buyout > Redemption ||
        !TryModelTextToInt(parts[1], cls) || !TryModelTextToInt(parts[2], funded))
        return false;
    std::vector<std::int32_t> ids;
    std::stringstream list(parts[3]);
    for (std::string id; list >> id;) {
        std::int32_t v = 0;
        if (!TryModelTextToInt(id, v)) return false;
        ids.push_back(v);
    }
    Buyout = static_cast<TBuyout>(buyout);
    ShareClassID = cls;
    InsuranceFunded = funded != 0;
    Shareholders = std::move(ids);
    return true;
}

} // namespace kv
