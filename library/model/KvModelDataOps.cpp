#include <algorithm>

#include "model/KvFnModelData.h"

namespace kv {

std::int32_t TModelData::PrincPartyID() const {
    const TParticipant* p = PrincParty();
    return p ? p->ID : -1;
}

bool TModelData::SecondParentExists() const {
    return std::count_if(participants_.begin(), participants_.end(), [](const auto& p) { return p->Role == 1; }) > 1;
}

} // namespace kv
