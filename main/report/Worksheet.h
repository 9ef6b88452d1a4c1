// Worksheets: the two input grids and the last result in a .tessary file
// (versioned JSON; docs/worksheet-format.md).
#pragma once

#include <QByteArray>
#include <QString>
#include <stdexcept>

#include "core/Grid.h"
#include "core/Rebalance.h"

namespace tessary {

// 2: holdings and the trades' options.
inline constexpr int kWorksheetVersion = 2;
inline constexpr char kWorksheetFormat[] = "tessary-worksheet";
inline constexpr char kWorksheetSuffix[] = "tessary";

class EWorksheet : public std::runtime_error {
public:
    enum class Fault {
        Unreadable, // the file cannot be read
        Foreign,    // not a worksheet at all
        Newer,      // a worksheet of a later version
        Damaged,    // a worksheet, but truncated or broken
        Unwritable, // saving failed; the previous file is unchanged
    };
    EWorksheet(Fault fault, const QString& message);
    Fault GetFault() const { return fault_; }

private:
    Fault fault_;
};

// Grids as the window shows them: the window's headers and design column
// widths (the window scales the widths by its zoom, as at start-up).
struct TWorksheet {
    TGrid accounts;
    TGrid classes;
    TGrid result;
    TTradesInput trades; // none in a version-1 document
    TWorksheet();
};

QByteArray WorksheetToJson(const TGrid& accounts, const TGrid& classes, const TGrid& result,
                           const TTradesInput& trades = {});

// fileName only names the document in messages. Throws EWorksheet.
TWorksheet WorksheetFromJson(const QByteArray& bytes, const QString& fileName);

// Atomic: the file is either the new worksheet or what it was before.
void SaveWorksheet(const QString& path, const TGrid& accounts, const TGrid& classes, const TGrid& result,
                   const TTradesInput& trades = {});

TWorksheet ReadWorksheet(const QString& path);

// Reads the whole document first; the grids change only when it is sound.
// Their Revision() restarts, so views must be refreshed explicitly.
void LoadWorksheet(const QString& path, TGrid& accounts, TGrid& classes, TGrid& result, TTradesInput* trades = nullptr);

} // namespace tessary
