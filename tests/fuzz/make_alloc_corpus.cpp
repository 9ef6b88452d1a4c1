// Writes the seed inputs of fuzz_alloc_text:
//   make_alloc_corpus <output folder>
#include <cstdio>
#include <fstream>
#include <string>

#include "items/KvAllocationYears.h"
#include "items/KvAssetSubClasses.h"
#include "items/KvPortAllocation.h"

namespace {

void Put(const std::string& path, const std::string& text) {
    std::ofstream(path, std::ios::binary | std::ios::trunc) << text;
}

} // namespace

int main(int argc, char** argv) {
    if (argc != 2) {
        std::fprintf(stderr, "usage: %s <output folder>\n", argv[0]);
        return 2;
    }
    const std::string dir = std::string(argv[1]) + "/";
    kv::TLibAllocYear even = kv::TLibAllocYear::GetEvenlyAllocation();
    even.SetSubCls2Share(3, 0, 0, 0.5);
    for (std::int32_t v : {0, 200507, 200803, 201202, 201304, 201404})
        Put(dir + "year-" + std::to_string(v), even.EncodeAs(v));
    Put(dir + "csv", "Class,Sub,Entry,Percent\r\n2,,,40\r\n\"3\",,,60\r\n2,3,,100\n3,0,0,50\n3,0,2,25\n3,1,,25\n");

    kv::TCHPortAllocation h(0x1E240);
    h.Name = "Holdings; detailed";
    h.Text = "C:\\note";
    h.Holdings = {{"XIU", 2, 0, -1, 1500.5}, {"VFV", 3, 0, 1, 250}};
    Put(dir + "holdings", h.GetAsString());
    kv::TPASMAClass sma(3);
    sma.Kind = 2;
    sma.Reference = 1003;
    sma.ClsShares = {0, 0, 0.5, 0.5, 0, 0};
    sma.Manager = "Acme";
    sma.FeeRate = 1.25;
    Put(dir + "sma", sma.GetAsString());
    kv::TLibAssetSubClass lib(3, 5, "Sector Funds");
    lib.Share = 0.1;
    lib.NAV = 12.5;
    lib.Returns.PutVal(2023, 0.05);
    Put(dir + "lib-subclass", lib.GetAsString());
    return 0;
}
