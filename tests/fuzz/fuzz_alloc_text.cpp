// Hostile texts for the allocation text forms: a year in every version and
// as CSV, and every allocation and sub-class record. Each accepted text must
// write back to a text that reads to the same object.
#include <cstddef>
#include <cstdint>
#include <memory>
#include <string>
#include <string_view>

#include "KvErrors.h"
#include "items/KvAllocationYears.h"
#include "items/KvAssetSubClasses.h"
#include "items/KvPortAllocation.h"

namespace {

void Require(bool ok) {
    if (!ok) __builtin_trap();
}

void Year(std::string_view text) {
    kv::TLibAllocYear y;
    y.Decode(text);
    const std::string once = y.Encode();
    kv::TLibAllocYear back;
    Require(back.Decode(once));
    Require(back.Encode() == once);
    y.SharesOK();
    y.FixShares();
    y.CalcAlloc(1000);
    volatile double sink = y.GetTotalVal() + y.CalcGrowth() + y.CalcStDAlloc();
    (void)sink;
    for (std::int32_t v : {200507, 200803, 201202, 201304, 201404}) {
        kv::TLibAllocYear old;
        old.Decode(y.EncodeAs(v));
    }
    kv::TLibAllocYear csv;
    csv.DecodeCSV(text);
    csv.FixShares();
}

template <class T>
void Record(std::string_view text) {
    T a(0);
    a.SetAsString(text);
    const std::string once = a.GetAsString();
    T b(0);
    b.SetAsString(once);
    Require(b.GetAsString() == once);
    Require(a.Clone()->GetAsString() == once);
    volatile std::size_t sink = a.GetFullName().size();
    (void)sink;
}

template <class T>
void SubRecord(std::string_view text) {
    T a;
    a.SetAsString(text);
    const std::string once = a.GetAsString();
    T b;
    b.SetAsString(once);
    Require(b.GetAsString() == once);
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const std::string_view text(reinterpret_cast<const char*>(data), size);
    try {
        Year(text);
        Record<kv::TPortAllocation>(text);
        Record<kv::TCHPortAllocation>(text);
        Record<kv::TPAClass>(text);
        Record<kv::TPASMAClass>(text);
        Record<kv::TFeesAssetClassesPr>(text);
        SubRecord<kv::TAssetSubClassHdr>(text);
        SubRecord<kv::TAssetSubClass>(text);
        SubRecord<kv::TLibAssetSubClass>(text);
    } catch (const kv::EKvError&) {
        // Nothing here should throw at all.
        __builtin_trap();
    }
    return 0;
}
