#include "parties/KvUIDLink.h"

#include "decl/KvModelFormat.h"

namespace kv {

std::string TUIDLink::Encode() const { return IntToModelText(ModelUID) + ":" + IntToModelText(PartyID); }

bool TUIDLink::Decode(const std::string& text) {
    const auto colon = text.find(':');
    if (colon == std::string::npos) return false;
    std::int32_t model = 0, party = 0;
    if (!TryModelTextToInt(std::string_view(text).substr(0, colon), model) ||
        !TryModelTextToInt(std::string_view(text).substr(colon + 1), party))
        return false;
    ModelUID = model;
    PartyID = party;
    return true;
}

int IndexOfLink(const TUIDLinks& links, const TUIDLink& link) {
    for (std::size_t i = 0; i < links.size(); ++i)
        if (links[i].Equals(link)) return static_cast<int>(i);
    return -1;
}

std::int32_t LinkedPartyUID(const TUIDLinks& links, std::int32_t modelUID) {
    for (const TUIDLink& l : links)
        if (l.ModelUID == modelUID) return l.PartyID;
    return -1;
}

} // namespace kv
