#include <algorithm>

#include "KvErrors.h"

#include "model/KvFnModelData.h"

namespace kv {

std::int32_t TModelData::PrincPartyID() const {
    const TParticipant* p = PrincParty();
    return p ? p->ID : -1;
}

bool TModelData::SecondParentExists() const {
    return std::count_if(participants_.begin(), participants_.end(), [](const auto& p) { return p->Role == 1; }) > 1;
}

namespace {
bool Within(const TFinItem* item, const TFinItem* top) {
    for (; item; item = item->Parent)
        if (item == top) return true;
    return false;
}
} // namespace

void TModelData::Delete(int index) {
    if (index < 0 || index >= Count()) throw EListError(index);
    const TFinItem* top = items_[std::size_t(index)].get();
    std::erase_if(ResultList, [top](const TFinItem* i) { return Within(i, top); });
    items_.erase(items_.begin() + index);
}

} // namespace kv
