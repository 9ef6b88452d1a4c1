#include "items/KvFnFinItems.h"

namespace kv {

double TPaysList::Total(std::int32_t kind) const {
    double t = 0;
    for (const TPay& p : *this)
        if (p.Kind == kind) t += p.Value;
    return t;
}

const TPay* TPaysList::ByKind(std::int32_t kind) const {
    for (const TPay& p : *this)
        if (p.Kind == kind) return &p;
    return nullptr;
}

double TPaysList::PartyTotal(std::int32_t kind, std::int32_t partyID) const {
    double t = 0;
    for (const TPay& p : *this)
        if (p.Kind == kind)
            for (const TPayer& payer : p.Payers)
                if (payer.PartyID == partyID) t += p.Value * payer.Code;
    return t;
}

} // namespace kv
