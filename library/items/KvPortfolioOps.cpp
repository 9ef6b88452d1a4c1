#include "entries/KvFnEntries.h"
#include "items/KvFnPortfolio.h"

namespace kv {

void TPortfolio::SetValue(double value) {
    Value = value;
    int written = 0;
    for (const auto& c : Children)
        if (c->Entry && c->Entry->KindCode() == kValueChildKind && written++ < 2) c->Value = value;
}

bool TPortfolio::IsPrimaryAccount(std::uint8_t modelKind) const {
    const std::int32_t id = EntryID();
    if (id == 948) return true;
    if (modelKind == 0 || modelKind == 4) return id == 6213;
    return modelKind == 2 && id == 6242;
}

} // namespace kv
