// CSV input of the command line: the accounts and the class targets, loaded
// into the same grids the window uses.
#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "core/Grid.h"

namespace tessary {

// RFC 4180 fields: quoted fields may hold commas, quotes ("") and line breaks;
// CRLF and LF both end a record; blank lines at the end of the text are not records.
std::vector<std::vector<std::string>> ParseCsv(std::string_view text);

// Header line, then rows "label,MD,BS,QR". An unknown or empty label gives a
// row without row object; empty or non-numeric amounts read 0. Totals are
// computed as after an edit in the window.
void LoadAccountsCsv(std::string_view text, TGrid& grdAccounts);

// Header line, then rows "label,percent".
void LoadClassesCsv(std::string_view text, TGrid& grdClasses);

} // namespace tessary
