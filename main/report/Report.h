// The report: title, date, the client's accounts, the targets, the result
// grid and the chart on one page; with holdings the trades on a second. One painting function serves the PDF export and
// the window's Print.
#pragma once

#include <QDate>
#include <QLocale>
#include <QRectF>
#include <QString>

#include "core/Grid.h"
#include "core/Rebalance.h"

class QPagedPaintDevice;
class QPainter;

namespace tessary {

struct TReportInput {
    const TGrid& accounts;
    const TGrid& classes;
    const TGrid& result;
    QDate date;
    QLocale locale;
    // With holdings, a second page lists the trades that take them to the plan.
    const TTradesInput* trades = nullptr;
};

// Whether the report gets its trades page.
bool ReportHasTrades(const TReportInput& input);

// The trades page alone (title, options, the trades table), shrunk to fit.
void PaintTradesReport(QPainter& painter, const QRectF& page, const TReportInput& input);

// Paints the report into page (device coordinates), shrinking it when the
// grids are too long for one page. Needs a QApplication (the chart).
void PaintReport(QPainter& painter, const QRectF& page, const TReportInput& input);

// One page on any paged device: a QPdfWriter, or a QPrinter after its print
// dialog. Throws EExport when the device cannot be painted on.
void PrintReport(QPagedPaintDevice& device, const TReportInput& input);

// A PDF file (Letter), written atomically. Throws EExport.
void WriteReportPdf(const QString& path, const TReportInput& input);

// The same, dated today, in the user's locale; throws EExport also when there
// is no QApplication.
void WriteAllocationReportPdf(const QString& path, const TGrid& accounts, const TGrid& classes, const TGrid& result);
// With the trades page of these holdings.
void WriteTradesReportPdf(const QString& path, const TGrid& accounts, const TGrid& classes, const TGrid& result,
                          const TTradesInput& trades);

} // namespace tessary
