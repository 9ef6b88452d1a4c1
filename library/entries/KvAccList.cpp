#include <algorithm>

#include "entries/KvFnEntries.h"

namespace kv {

const TAcc* TAccList::FindByCode(const std::string& code) const {
    const int i = GetAccOrder(code);
    return i < 0 ? nullptr : (*this)[std::size_t(i)].get();
}

int TAccList::GetAccOrder(const std::string& code) const {
    for (std::size_t i = 0; i < size(); ++i)
        if ((*this)[i]->Code() == code) return static_cast<int>(i);
    return -1;
}

std::vector<const TAcc*> TAccList::ListSubAccounts(const std::string& code) const {
    std::vector<const TAcc*> subs;
    const TAcc* top = FindByCode(code);
    if (!top) return subs;
    for (const auto& a : *this)
        for (const TAcc* up = a->Parent; up; up = up->Parent)
            if (up == top) {
                subs.push_back(a.get());
                break;
            }
    return subs;
}

void TAccList::SortByAccountsOrder(std::vector<std::string>& codes) const {
    std::stable_sort(codes.begin(), codes.end(), [this](const std::string& a, const std::string& b) {
        const auto ia = static_cast<unsigned>(GetAccOrder(a)), ib = static_cast<unsigned>(GetAccOrder(b));
        return ia < ib; // -1 turns into the largest unsigned: absent codes last
    });
}

const TEntryVal* TEntryVals::Find(std::uint8_t kind, const std::string& name) const {
    for (const TEntryVal& v : *this)
        if (v.Kind == kind && v.Name == name) return &v;
    return nullptr;
}

std::int32_t TEntryVals::ValueOf(std::uint8_t kind, const std::string& name, std::int32_t def) const {
    const TEntryVal* v = Find(kind, name);
    return v ? v->Value : def;
}

} // namespace kv
