// Messages a model gathers while it is loaded and calculated (TMdMsg), for
// the program to show once the work is done rather than stopping it.
#pragma once

#include <algorithm>
#include <cstdint>
#include <string>
#include <vector>

namespace kv {

struct TMdMsg {
    enum TKind : std::uint8_t { Info = 0, Warning = 1, Error = 2 };
    TKind Kind = Info;
    std::int32_t ItemID = 0;   // the item concerned, 0 for the model as a whole
    std::int32_t PartyID = -1; // the party concerned, -1 for none
    std::string Text;
};

class TMdMsgList : public std::vector<TMdMsg> {
public:
    // A message already held (same kind, item and text) is not repeated: a
    // calculation run year by year would otherwise say it once a year.
    bool Add(TMdMsg msg) {
        const bool held = std::any_of(begin(), end(), [&](const TMdMsg& m) {
            return m.Kind == msg.Kind && m.ItemID == msg.ItemID && m.PartyID == msg.PartyID && m.Text == msg.Text;
        });
        if (!held) push_back(std::move(msg));
        return !held;
    }
    bool HasErrors() const {
        return std::any_of(begin(), end(), [](const TMdMsg& m) { return m.Kind == TMdMsg::Error; });
    }
};

} // namespace kv
