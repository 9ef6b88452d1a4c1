#include "core/CsvInput.h"

#include "core/Totals.h"
#include "core/Vocabulary.h"

namespace tessary {

std::vector<std::vector<std::string>> ParseCsv(std::string_view text) {
    std::vector<std::vector<std::string>> records;
    std::vector<std::string> record;
    std::string field;
    bool inQuotes = false;
    bool fieldStarted = false;   // the record has content, even an empty quoted field

    auto endField = [&] {
        record.push_back(std::move(field));
        field.clear();
    };
    auto endRecord = [&] {
        endField();
        records.push_back(std::move(record));
        record.clear();
        fieldStarted = false;
    };

    for (std::size_t i = 0; i < text.size(); ++i) {
        char c = text[i];
        if (inQuotes) {
            if (c == '"') {
                if (i + 1 < text.size() && text[i + 1] == '"') {
                    field += '"';
                    ++i;
                } else {
                    inQuotes = false;
                }
            } else {
                field += c;
            }
            continue;
        }
        switch (c) {
        case '"':
            inQuotes = true;
            fieldStarted = true;
            break;
        case ',':
            endField();
            fieldStarted = true;
            break;
        case '\r':
            if (i + 1 < text.size() && text[i + 1] == '\n') ++i;
            [[fallthrough]];
        case '\n':
            endRecord();
            break;
        default:
            field += c;
            fieldStarted = true;
        }
    }
    if (fieldStarted || !field.empty() || !record.empty()) endRecord();

    while (!records.empty() && records.back().size() == 1 && records.back()[0].empty()) records.pop_back();
    return records;
}

namespace {

std::string_view StripBom(std::string_view text) {
    if (text.substr(0, 3) == "\xEF\xBB\xBF") text.remove_prefix(3);
    return text;
}

double AmountOf(const std::vector<std::string>& fields, std::size_t index) {
    double v = 0;
    if (index < fields.size() && ParseNumber(fields[index], v)) return v;
    return 0;
}

} // namespace

void LoadAccountsCsv(std::string_view text, TGrid& grid) {
    auto records = ParseCsv(StripBom(text));
    grid.SetRowCount(grid.FixedRows());
    for (std::size_t i = 1; i < records.size(); ++i) {
        const auto& f = records[i];
        int r = grid.AddRow();
        std::string label = f.empty() ? std::string() : f[0];
        grid.SetObject(0, r, AccountKindOf(label));
        grid.SetText(0, r, std::move(label));
        for (int c = 1; c <= 3; ++c) grid.SetFloat(c, r, AmountOf(f, static_cast<std::size_t>(c)));
    }
    RecomputeAccountTotals(grid);
}

void LoadClassesCsv(std::string_view text, TGrid& grid) {
    auto records = ParseCsv(StripBom(text));
    grid.SetRowCount(grid.FixedRows());
    for (std::size_t i = 1; i < records.size(); ++i) {
        const auto& f = records[i];
        int r = grid.AddRow();
        std::string label = f.empty() ? std::string() : f[0];
        grid.SetObject(0, r, AssetClassOf(label));
        grid.SetText(0, r, std::move(label));
        grid.SetFloat(1, r, AmountOf(f, 1));
    }
}

} // namespace tessary
