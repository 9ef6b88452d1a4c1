// Hostile text as the command line's CSV inputs: the same bytes loaded as the
// accounts file and as the classes file, then the calculation over both, as
// "tessary-cli allocate" runs it. Every accounts row must come from one
// record that is not blank, labelled with its first field; the classes keep
// every such record and at most the blank ones between.
#include <cmath>
#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "core/Allocation.h"
#include "core/CsvInput.h"
#include "core/Totals.h"

namespace {

void Check(bool ok) {
    if (!ok) __builtin_trap();
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    using namespace tessary;
    std::string_view text(reinterpret_cast<const char*>(data), size);

    TGrid accounts = MakeAccountsGrid();
    TGrid classes = MakeClassesGrid();
    TGrid result = MakeResultGrid();
    LoadAccountsCsv(text, accounts);
    LoadClassesCsv(text, classes);

    if (text.substr(0, 3) == "\xEF\xBB\xBF") text.remove_prefix(3);
    const auto records = ParseCsv(text);
    std::vector<const std::vector<std::string>*> filled;   // body records that are not blank
    for (std::size_t i = 1; i < records.size(); ++i)
        if (!(records[i].size() == 1 && records[i][0].empty())) filled.push_back(&records[i]);
    const int body = records.empty() ? 0 : static_cast<int>(records.size()) - 1;
    Check(accounts.RowCount() - accounts.FixedRows() == static_cast<int>(filled.size()));
    const int classRows = classes.RowCount() - classes.FixedRows();
    Check(classRows >= static_cast<int>(filled.size()) && classRows <= body);
    for (std::size_t i = 0; i < filled.size(); ++i) {
        const auto& f = *filled[i];
        const int row = accounts.FixedRows() + static_cast<int>(i);
        Check(accounts.Text(0, row) == (f.empty() ? std::string() : f[0]));
        const double sum = accounts.Float(1, row) + accounts.Float(2, row) + accounts.Float(3, row);
        const double total = accounts.Float(4, row);
        Check(total == sum || (std::isnan(total) && std::isnan(sum)));
    }

    CalculateAllocation(accounts, classes, result, kDesignAddAccWidth);
    Check(result.RowCount() >= 1 && result.ColCount() >= 1);
    return 0;
}
