// A link from a party to a party of another client file: the other file's
// unique identifier and the party's identifier there. A party keeps its links
// so that plans of one family made in several client files find each other.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

namespace kv {

struct TUIDLink {
    std::int32_t ModelUID = 0; // unique identifier of the other client file
    std::int32_t PartyID = 0;  // the party in that file

    bool Equals(const TUIDLink& other) const { return ModelUID == other.ModelUID && PartyID == other.PartyID; }
    // "ModelUID:PartyID", model-file integers.
    std::string Encode() const;
    // False, and the link unchanged, for a text that is not two integers.
    bool Decode(const std::string& text);
};

using TUIDLinks = std::vector<TUIDLink>;

// Position of an equal link, -1 when absent.
int IndexOfLink(const TUIDLinks& links, const TUIDLink& link);
// The party linked in the client file of that identifier, -1 when none.
std::int32_t LinkedPartyUID(const TUIDLinks& links, std::int32_t modelUID);

} // namespace kv
