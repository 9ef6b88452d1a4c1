// How the grids show their cells: shared by the window and the command line.
#pragma once

#include <QJsonDocument>
#include <QLocale>
#include <QString>

#include "core/Grid.h"

namespace tessary {

enum class GridKind { Accounts, Classes, Result };
enum class CellAlign { Left, Centre, Right };

// The user's locale; an unset (C/POSIX) locale falls back to English (Canada),
// which knows the dollar sign and digit grouping.
QLocale AppLocale();
// The window's language choice; the command line leaves it unset.
void SetAppLocale(const QLocale& locale);

// A vocabulary text of the grids (headers, account kinds, asset classes) in
// the installed translation; other texts as they are. Grids and documents keep
// the English text.
QString VocabularyText(const std::string& text);

QString FormatMoney(double value, const QLocale& locale); // "%.0m"
QString FormatPlain(double value, const QLocale& locale); // "%.0f"

// "$" followed by the grand total as "#,##0" (French: the locale's "1 234 $").
QString AccountsTotalLabel(double total, const QLocale& locale);
// The class total rounded (halves to even), then "%".
QString ClassTotalLabel(double total, const QLocale& locale);

// A number as people type it into an amount (unit "$") or percent (unit "%")
// cell: plain, or with the locale's grouping and decimal marks, spaces
// (also no-break ones) as grouping, the unit before or after. French also
// takes "." as its decimal mark. Anything else, and non-finite values, are
// refused: false, out untouched.
bool ParseTypedNumber(const QString& text, const QLocale& locale, QChar unit, double& out);

QString DisplayText(const TGrid& grid, GridKind kind, int col, int row, const QLocale& locale);
CellAlign DisplayAlign(GridKind kind, int col, int row);

// A name as one line of the command line's name lists: a backslash becomes
// "\\", a line break "\n", a carriage return "\r", a tab "\t", any other
// control character (U+0000-U+001F, U+007F-U+009F) or line separator
// (U+2028, U+2029) "\xHH" or "\uHHHH". Plain names print as they are.
QString EscapedNameLine(const QString& name);
// The inverse: the name an escaped line stands for; a backslash that starts
// no escape stays as it is.
QString UnescapedNameLine(const QString& line);

// The grid as plain text, columns aligned as the window aligns them.
QString FormatGridText(const TGrid& grid, GridKind kind, const QLocale& locale);

// {"columns": N, "rows": M, "cells": [[...], ...]}: texts as strings, floats as
// numbers, non-finite floats as "inf", "-inf" or "nan", empty cells as "".
QJsonDocument GridToJson(const TGrid& grid);

} // namespace tessary
