// Hostile bytes as a balance file, loaded with a model that knows two
// parties, then queried the way the planning code walks a balance.
#include <cstddef>
#include <cstdint>
#include <ostream>
#include <streambuf>
#include <vector>

#include "KvErrors.h"
#include "KvSettings.h"
#include "files/KvFnBufFile.h"
#include "items/KvBalance.h"
#include "model/KvFnModelData.h"
#include "parties/KvFnParty.h"

namespace {

struct TNullBuf : std::streambuf {
    int overflow(int c) override { return c; }
};

kv::TModelData& Model() {
    static kv::TModelData* m = [] {
        auto* model = new kv::TModelData(0, nullptr, nullptr, nullptr, nullptr, "/nonexistent/FinItems.dat", nullptr,
                                         kv::kDefaultLibrarySettings);
        for (std::int32_t id : {1, 2}) model->AddParticipant(kv::CreateParty(0, id, 1, 0));
        return model;
    }();
    return *m;
}

void Walk(const kv::TBalance& b) {
    volatile double sink = 0;
    sink = sink + double(b.ListAllE().size()) + double(b.ListPopulatedAccounts().size());
    for (int i = 0; i < b.Count() && i < 8; ++i) {
        const kv::TAccount& a = b.GetAccount(i);
        std::int32_t y = 0;
        sink = sink + b.AccountTotal(a.Key) + b.AccountMax(a.Key, &y) + b.AccountMin(a.Key, &y) +
               b.FirstAccountNegativeYear(a.Key) + double(b.ListAccountItems(a.Key).size()) +
               double(b.ExploreAccount(a.Key).size());
        if (a.Count() > 0) {
            const std::int32_t year = a.GetAccountDate(0).Year;
            sink = sink + b.FindValSumm(a.Key, year) + b.FindValX(a.Key, year, 0);
        }
    }
    TNullBuf buf;
    std::ostream os(&buf);
    b.Print(os);
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    auto r = kv::TBufReadFile::FromBytes(std::vector<std::uint8_t>(data, data + size), "fuzz.bal");
    kv::TBalance b(&Model());
    try {
        b.Load(r);
        Walk(b);
    } catch (const kv::EKvError&) {
        if (b.Count() != 0) __builtin_trap();   // a failed load leaves the balance as it was
    }
    return 0;
}
