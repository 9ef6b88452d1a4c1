#include "core/CsvInput.h"

#include <cstdint>
#include <cerrno>
#include <system_error>
#include <type_traits>
#include <utility>

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include "core/Totals.h"
#include "core/Vocabulary.h"

namespace tessary {

std::string ReadInputFile(const std::string& path, std::size_t maxBytes) {
    auto fail = [&](const std::string& why) -> EInputFile {
        return EInputFile("Cannot read \"" + path + "\": " + why);
    };
    auto osText = [](int err) { return std::error_code(err, std::generic_category()).message(); };
    // O_NONBLOCK: opening a FIFO must not wait for a writer.
    const int fd = ::open(path.c_str(), O_RDONLY | O_CLOEXEC | O_NONBLOCK);
    if (fd < 0) throw fail(osText(errno));
    struct Closer {
        int fd;
        ~Closer() { ::close(fd); }
    } closer{fd};
    struct stat st;
    if (::fstat(fd, &st) != 0) throw fail(osText(errno));
    if (!S_ISREG(st.st_mode)) throw fail("it is not a regular file");
    if (static_cast<std::uint64_t>(st.st_size) > maxBytes)
        throw fail("it is larger than " + std::to_string(maxBytes >> 20) + " MiB");
    std::string bytes(static_cast<std::size_t>(st.st_size), '\0');
    std::size_t done = 0;
    // The size seen above bounds the read even if the file grows meanwhile.
    while (done < bytes.size()) {
        const ssize_t r = ::read(fd, bytes.data() + done, bytes.size() - done);
        if (r < 0) {
            if (errno == EINTR) continue;
            throw fail(osText(errno));
        }
        if (r == 0) break;
        done += static_cast<std::size_t>(r);
    }
    bytes.resize(done);
    return bytes;
}

namespace {

// Calls onRecord(fields) for every record and onBlanks(n) for each run of n
// blank records (a single empty field) that more records follow; blank records
// at the end are not records. The fields are reused from one record to the
// next, so a run of blank lines costs no memory at all.
template <class OnRecord, class OnBlanks>
void VisitCsv(std::string_view text, OnRecord&& onRecord, OnBlanks&& onBlanks) {
    std::vector<std::string> record;
    std::size_t line = 1;       // of the character being read
    std::size_t recordLine = 1; // where the current record began
    std::size_t used = 0;       // fields of record in use; the rest keep their buffers
    std::size_t blanks = 0;     // blank records not yet reported
    bool inQuotes = false;
    bool fieldStarted = false; // the record has content, even an empty quoted field

    auto field = [&]() -> std::string& {
        if (used == record.size()) record.emplace_back();
        return record[used];
    };
    auto endField = [&] {
        field();
        ++used;
        if (used < record.size()) record[used].clear();
    };
    auto endRecord = [&] {
        endField();
        if (used == 1 && record[0].empty()) {
            ++blanks;
        } else {
            if (blanks > 0) onBlanks(blanks);
            blanks = 0;
            record.resize(used);
            if constexpr (std::is_invocable_v<OnRecord&, const std::vector<std::string>&, std::size_t>)
                onRecord(record, recordLine);
            else
                onRecord(record);
        }
        used = 0;
        if (!record.empty()) record[0].clear();
        fieldStarted = false;
        recordLine = line;
    };

    for (std::size_t i = 0; i < text.size(); ++i) {
        char c = text[i];
        if (inQuotes) {
            if (c == '"') {
                if (i + 1 < text.size() && text[i + 1] == '"') {
                    field() += '"';
                    ++i;
                } else {
                    inQuotes = false;
                }
            } else {
                if (c == '\n' || (c == '\r' && (i + 1 == text.size() || text[i + 1] != '\n'))) ++line;
                field() += c;
            }
            continue;
        }
        switch (c) {
            case '"':
                inQuotes = true;
                fieldStarted = true;
                field();
                break;
            case ',':
                endField();
                fieldStarted = true;
                break;
            case '\r':
                if (i + 1 < text.size() && text[i + 1] == '\n') ++i;
                [[fallthrough]];
            case '\n':
                ++line;
                endRecord();
                break;
            default: field() += c; fieldStarted = true;
        }
    }
    if (fieldStarted || used > 0 || (used < record.size() && !record[used].empty())) endRecord();
}

std::string_view StripBom(std::string_view text) {
    if (text.substr(0, 3) == "\xEF\xBB\xBF") text.remove_prefix(3);
    return text;
}

} // namespace

std::vector<TCsvRecord> ParseCsvRecords(std::string_view text) {
    std::vector<TCsvRecord> records;
    VisitCsv(
        StripBom(text),
        [&](const std::vector<std::string>& fields, std::size_t line) {
            records.push_back({line, fields});
        },
        [](std::size_t) {});
    return records;
}

std::vector<std::vector<std::string>> ParseCsv(std::string_view text) {
    std::vector<std::vector<std::string>> records;
    VisitCsv(
        text, [&](const std::vector<std::string>& r) { records.push_back(r); },
        [&](std::size_t n) { records.insert(records.end(), n, std::vector<std::string>{std::string()}); });
    return records;
}

namespace {

double AmountOf(const std::vector<std::string>& fields, std::size_t index) {
    double v = 0;
    if (index < fields.size() && ParseNumber(fields[index], v)) return v;
    return 0;
}

} // namespace

void LoadAccountsCsv(std::string_view text, TGrid& grid, TCsvRows rows) {
    grid.SetRowCount(grid.FixedRows());
    bool header = true;
    // A blank line would be a row without object, which the calculation drops
    // unseen; it is left out here rather than built.
    VisitCsv(
        StripBom(text),
        [&](const std::vector<std::string>& f) {
            if (std::exchange(header, false)) return;
            const int kind = AccountKindOf(f[0]);
            if (kind == 0 && rows == TCsvRows::ForResult) return;
            int r = grid.AddRow();
            std::string label = f[0];
            grid.SetObject(0, r, kind);
            grid.SetText(0, r, std::move(label));
            for (int c = 1; c <= 3; ++c) grid.SetFloat(c, r, AmountOf(f, static_cast<std::size_t>(c)));
        },
        [&](std::size_t) { header = false; });
    RecomputeAccountTotals(grid);
}

void LoadClassesCsv(std::string_view text, TGrid& grid, TCsvRows rows) {
    text = StripBom(text);
    // A row without object moves the names of the classes below it one row
    // down in the result, off it once they pass the last class row. So blank
    // lines count while fewer rows without object than classes precede them;
    // later ones change nothing and are left out rather than built.
    std::size_t classes = 0;
    bool header = true;
    VisitCsv(
        text,
        [&](const std::vector<std::string>& f) {
            if (!std::exchange(header, false) && !f.empty() && AssetClassOf(f[0]) != 0) ++classes;
        },
        [&](std::size_t) { header = false; });

    grid.SetRowCount(grid.FixedRows());
    std::size_t withoutObject = 0;
    header = true;
    auto addRow = [&](const std::string& label, double percent) {
        const int code = AssetClassOf(label);
        if (code == 0) {
            if (rows == TCsvRows::ForResult && withoutObject >= classes) return;
            ++withoutObject;
        }
        const int r = grid.AddRow();
        grid.SetObject(0, r, code);
        grid.SetText(0, r, label);
        grid.SetFloat(1, r, percent);
    };
    VisitCsv(
        text,
        [&](const std::vector<std::string>& f) {
            if (std::exchange(header, false)) return;
            addRow(f[0], AmountOf(f, 1));
        },
        [&](std::size_t n) {
            if (std::exchange(header, false)) --n;
            for (; n > 0 && withoutObject < classes; --n) addRow(std::string(), 0);
        });
}

} // namespace tessary
