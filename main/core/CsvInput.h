// CSV input of the command line: the accounts and the class targets, loaded
// into the same grids the window uses.
#pragma once

#include <cstddef>
#include <stdexcept>
#include <string>
#include <string_view>
#include <vector>

#include "core/Grid.h"

namespace tessary {

// An input file that cannot be used; the message names it.
class EInputFile : public std::runtime_error {
public:
    using std::runtime_error::runtime_error;
};

// Far above any client's accounts or targets (a few hundred rows, a few KB);
// the grids built from a file take tens of times its size.
inline constexpr std::size_t kMaxCsvBytes = std::size_t(4) << 20;

// The whole of a regular file of at most maxBytes. A pipe, device or folder is
// refused rather than waited on or read without end.
std::string ReadInputFile(const std::string& path, std::size_t maxBytes = kMaxCsvBytes);

// RFC 4180 fields: quoted fields may hold commas, quotes ("") and line breaks;
// CRLF and LF both end a record; blank lines at the end of the text are not records.
std::vector<std::vector<std::string>> ParseCsv(std::string_view text);

// The records of a CSV text without a leading byte-order mark, each with the
// line it starts on (1-based), blank lines left out.
struct TCsvRecord {
    std::size_t Line = 0;
    std::vector<std::string> Fields;
};
std::vector<TCsvRecord> ParseCsvRecords(std::string_view text);

// Which rows a loader builds. A row without row object (unknown or empty
// label) shows in the window until the calculation deletes it; where only the
// calculation's result is wanted, the rows whose absence changes nothing in it
// are left out.
enum class TCsvRows { Shown, ForResult };

// Header line, then rows "label,MD,BS,QR". An unknown or empty label gives a
// row without row object; empty or non-numeric amounts read 0. Totals are
// computed as after an edit in the window. Blank lines are never built: the
// calculation drops them unseen.
void LoadAccountsCsv(std::string_view text, TGrid& grdAccounts, TCsvRows rows = TCsvRows::Shown);

// Header line, then rows "label,percent". Rows without object shift the class
// names below them in the result until they pass the last class row; blank
// lines (or, for ForResult, any rows without object) beyond that are not built.
void LoadClassesCsv(std::string_view text, TGrid& grdClasses, TCsvRows rows = TCsvRows::Shown);

} // namespace tessary
