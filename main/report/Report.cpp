#include "report/Report.h"

#include <QApplication>
#include <QCoreApplication>
#include <QFontMetricsF>
#include <QPagedPaintDevice>
#include <QPainter>
#include <QPdfWriter>
#include <QSaveFile>
#include <algorithm>
#include <climits>
#include <optional>
#include <vector>

#include "format/GridFormat.h"
#include "core/Totals.h"
#include "core/Vocabulary.h"
#include "report/Chart.h"
#include "report/ClassColours.h"
#include "format/Export.h"
#include "format/TradesFormat.h"

namespace tessary {

namespace {

// Sizes in points.
constexpr qreal kTitlePt = 18, kDatePt = 10, kHeadingPt = 11, kTablePt = 8.5, kFooterPt = 7;
constexpr qreal kGapPt = 14, kHeadingGapPt = 18, kChartMinPt = 190, kCellPadPt = 4, kSwatchPt = 7;
// Shares of the page width beside each other.
constexpr qreal kAccountsShare = 0.58, kClassesShare = 0.38;

const QColor kHeaderFill(0xEE, 0xF0, 0xF3);
const QColor kLine(0xB8, 0xBE, 0xC6);
const QColor kMuted(0x60, 0x66, 0x70);
// Buys and sells read apart also in black and white: separate columns, and these.
const QColor kBuy(0x1B, 0x7F, 0x3B);
const QColor kSell(0xB3, 0x26, 0x1E);

struct TTableCell {
    QString text;
    CellAlign align = CellAlign::Left;
    std::optional<QColor> swatch;
    QColor colour = Qt::black;
    bool bold = false;
};

struct TTable {
    std::vector<std::vector<TTableCell>> rows;
    int headerRows = 1;
    std::vector<TMerge> merges;
    int totalRow = INT_MAX; // drawn bold under a rule
};

TTable TableOf(const TGrid& grid, GridKind kind, const QLocale& locale) {
    TTable t;
    t.headerRows = grid.FixedRows();
    t.merges = grid.Merges();
    // Spare result columns the calculation never wrote would only take room.
    int cols = grid.ColCount();
    auto emptyColumn = [&](int c) {
        for (int r = 0; r < grid.RowCount(); ++r)
            if (!grid.Cell(c, r).IsEmpty()) return false;
        return true;
    };
    while (cols > 1 && emptyColumn(cols - 1)) --cols;
    for (int r = 0; r < grid.RowCount(); ++r) {
        std::vector<TTableCell> row;
        for (int c = 0; c < cols; ++c) {
            TTableCell cell{DisplayText(grid, kind, c, r, locale), DisplayAlign(kind, c, r), std::nullopt};
            if (c == 0 && r >= t.headerRows) {
                if (kind == GridKind::Classes && grid.Object(0, r) != 0) cell.swatch = ClassColour(grid.Object(0, r));
                if (kind == GridKind::Result && !cell.text.isEmpty()) cell.swatch = ClassColourOfLabel(grid.Text(0, r));
            }
            row.push_back(std::move(cell));
        }
        t.rows.push_back(std::move(row));
    }
    return t;
}

void AddTotalRow(TTable& t, int columns, int valueCol, const QString& value) {
    std::vector<TTableCell> row(static_cast<std::size_t>(columns));
    row[0].text = QCoreApplication::translate("tessary::Report", "Total");
    row[static_cast<std::size_t>(valueCol)] = {value, CellAlign::Right, std::nullopt};
    t.totalRow = static_cast<int>(t.rows.size());
    t.rows.push_back(std::move(row));
}

TTable TradesTable(const std::vector<TAccountTrades>& trades, const QLocale& locale) {
    TTable t;
    const QStringList headers = TradesHeaders();
    // The window's layout: one name column, the account types as headings.
    auto cell = [](const QString& text, CellAlign align, QColor colour = Qt::black) {
        return TTableCell{text, align, std::nullopt, colour, false};
    };
    t.rows.push_back({cell(headers[1], CellAlign::Left), cell(headers[2], CellAlign::Right),
                      cell(headers[3], CellAlign::Right), cell(headers[4], CellAlign::Right),
                      cell(headers[5], CellAlign::Right)});
    auto money = [&](const std::optional<double>& v, QColor colour = Qt::black) {
        return cell(v ? FormatMoney(*v, locale) : QString(), CellAlign::Right, colour);
    };
    for (const TTradesRow& r : TradesRows(trades)) {
        using Kind = TTradesRow::Kind;
        const bool heading = r.kind == Kind::Account || r.kind == Kind::Total;
        TTableCell name = cell(heading ? r.account : QStringLiteral("    ") + r.item, CellAlign::Left);
        name.bold = heading;
        if (r.kind == Kind::Class) name.swatch = ClassColour(r.code);
        if (r.kind == Kind::Total) t.totalRow = static_cast<int>(t.rows.size());
        t.rows.push_back({name, money(r.current), money(r.target), money(r.buy, kBuy), money(r.sell, kSell)});
    }
    return t;
}

const TMerge* MergeAt(const TTable& t, int col, int row) {
    for (const TMerge& m : t.merges)
        if (col >= m.col && col < m.col + m.cols && row >= m.row && row < m.row + m.rows) return &m;
    return nullptr;
}

class TReportPainter {
public:
    TReportPainter(QPainter& painter, const QRectF& page, const TReportInput& in)
        : p_(painter), page_(page), in_(in), pxPerPt_(painter.device()->logicalDpiY() / 72.0) {
        accounts_ = TableOf(in.accounts, GridKind::Accounts, in.locale);
        double grand = 0;
        for (int r = 1; r < in.accounts.RowCount(); ++r)
            grand += in.accounts.Float(1, r) + in.accounts.Float(2, r) + in.accounts.Float(3, r);
        AddTotalRow(accounts_, in.accounts.ColCount(), in.accounts.ColCount() - 1, FormatMoney(grand, in.locale));
        classes_ = TableOf(in.classes, GridKind::Classes, in.locale);
        AddTotalRow(classes_, in.classes.ColCount(), in.classes.ColCount() - 1,
                    ClassTotalLabel(ClassTotal(in.classes), in.locale));
        result_ = TableOf(in.result, GridKind::Result, in.locale);
        hasChart_ = !AllocationSeries(in.result).accountTypes.isEmpty();
    }

    void PaintTrades(const std::vector<TAccountTrades>& trades) {
        trades_ = TradesTable(trades, in_.locale);
        for (int round = 0; round < 8; ++round) {
            const qreal over = std::max(TradesHeight() / page_.height(), Sum(NaturalWidths(trades_)) / page_.width());
            if (over <= 1) break;
            fit_ *= 0.99 / over;
        }
        p_.save();
        const qreal left = page_.left(), width = page_.width();
        qreal y = Title(QCoreApplication::translate("tessary::Report", "From holdings to the plan"));
        p_.drawText(QRectF(left, y, width, Pt(kHeadingGapPt)), Qt::AlignLeft | Qt::AlignTop, OptionsLine());
        y += Pt(kHeadingGapPt);
        y = Heading(QCoreApplication::translate("tessary::Report", "Trades by account type"), left, y);
        Table(trades_, left, y, std::min(width, Sum(NaturalWidths(trades_)) * 1.3));
        Footer();
        p_.restore();
    }

    void Paint() {
        // Shrink everything alike until the page holds it; text size is not
        // exactly linear in the font size, hence a few rounds.
        for (int round = 0; round < 8; ++round) {
            const qreal over = std::max(Height() / page_.height(), WidthRatio());
            if (over <= 1) break;
            fit_ *= 0.99 / over;
        }
        Draw();
    }

private:
    qreal Pt(qreal points) const { return points * pxPerPt_ * fit_; }

    QFont Font(qreal points, bool bold = false) const {
        QFont f = QApplication::font();
        f.setPointSizeF(points * fit_);
        f.setBold(bold);
        return f;
    }

    QFontMetricsF Metrics(const QFont& font) const { return QFontMetricsF(font, p_.device()); }

    qreal RowHeight() const { return Metrics(Font(kTablePt)).height() * 1.55; }

    qreal TableHeight(const TTable& t) const { return RowHeight() * static_cast<qreal>(t.rows.size()); }

    std::vector<qreal> NaturalWidths(const TTable& t) const {
        const std::size_t cols = t.rows.empty() ? 0 : t.rows.front().size();
        std::vector<qreal> w(cols, Pt(2 * kCellPadPt));
        for (std::size_t r = 0; r < t.rows.size(); ++r) {
            const QFontMetricsF fm =
                Metrics(Font(kTablePt, static_cast<int>(r) < t.headerRows || static_cast<int>(r) == t.totalRow));
            for (std::size_t c = 0; c < cols; ++c) {
                const TTableCell& cell = t.rows[r][c];
                const TMerge* m = MergeAt(t, static_cast<int>(c), static_cast<int>(r));
                const qreal need = fm.horizontalAdvance(cell.text) + Pt(2 * kCellPadPt) +
                                   (cell.swatch ? Pt(kSwatchPt + kCellPadPt) : 0);
                if (!m || m->cols == 1) {
                    w[c] = std::max(w[c], need);
                } else if (m->col == static_cast<int>(c) && m->row == static_cast<int>(r)) {
                    // A merged text widens the last column it spans when it does not fit.
                    const std::size_t last = std::min(cols, c + static_cast<std::size_t>(m->cols)) - 1;
                    qreal span = 0;
                    for (std::size_t k = c; k <= last; ++k) span += w[k];
                    if (need > span) w[last] += need - span;
                }
            }
        }
        return w;
    }

    static qreal Sum(const std::vector<qreal>& v) {
        qreal s = 0;
        for (qreal x : v) s += x;
        return s;
    }

    qreal WidthRatio() const {
        return std::max({Sum(NaturalWidths(accounts_)) / (page_.width() * kAccountsShare),
                         Sum(NaturalWidths(classes_)) / (page_.width() * kClassesShare),
                         Sum(NaturalWidths(result_)) / page_.width()});
    }

    qreal TitleHeight() const { return Metrics(Font(kTitlePt, true)).height() + Pt(4); }

    // The page's title on the left and the date on the right; returns where the body starts.
    qreal Title(const QString& title) {
        const QRectF titleRect(page_.left(), page_.top(), page_.width(), TitleHeight());
        p_.setPen(Qt::black);
        p_.setFont(Font(kTitlePt, true));
        p_.drawText(titleRect, Qt::AlignLeft | Qt::AlignBottom, title);
        p_.setFont(Font(kDatePt));
        p_.setPen(kMuted);
        p_.drawText(titleRect, Qt::AlignRight | Qt::AlignBottom, in_.locale.toString(in_.date, QLocale::LongFormat));
        return page_.top() + TitleHeight() + Pt(kGapPt);
    }
    qreal FooterHeight() const { return Metrics(Font(kFooterPt)).height() + Pt(6); }

    qreal Height() const {
        return TitleHeight() + Pt(kGapPt) + Pt(kHeadingGapPt) +
               std::max(TableHeight(accounts_), TableHeight(classes_)) + Pt(kGapPt) + Pt(kHeadingGapPt) +
               TableHeight(result_) + Pt(kGapPt) + Pt(kHeadingGapPt) + Pt(kChartMinPt) + FooterHeight();
    }

    qreal TradesHeight() const {
        return TitleHeight() + Pt(kGapPt) + 2 * Pt(kHeadingGapPt) + TableHeight(trades_) + Pt(kGapPt) + FooterHeight();
    }

    QString OptionsLine() const {
        const TRebalanceOptions& o = in_.trades->Options;
        QString band = QCoreApplication::translate("tessary::Report", "Band (percentage points of each account): %1")
                           .arg(in_.locale.toString(o.BandPercent, 'g', 4));
        return band + QStringLiteral(" \u2022 ") +
               (o.NoSellTaxable ? QCoreApplication::translate("tessary::Report", "no sales in taxable accounts")
                                : QCoreApplication::translate("tessary::Report", "sales allowed in every account"));
    }

    void Footer() {
        p_.setFont(Font(kFooterPt));
        p_.setPen(kMuted);
        p_.drawText(QRectF(page_.left(), page_.bottom() - FooterHeight(), page_.width(), FooterHeight()),
                    Qt::AlignLeft | Qt::AlignBottom,
                    QCoreApplication::translate("tessary::Report", "Prepared with Tessary"));
    }

    qreal Heading(const QString& text, qreal x, qreal y) {
        p_.setFont(Font(kHeadingPt, true));
        p_.setPen(Qt::black);
        p_.drawText(QRectF(x, y, page_.right() - x, Pt(kHeadingGapPt)), Qt::AlignLeft | Qt::AlignTop, text);
        return y + Pt(kHeadingGapPt);
    }

    // Columns take their natural widths, stretched alike to fill width.
    qreal Table(const TTable& t, qreal left, qreal top, qreal width) {
        if (t.rows.empty()) return top;
        // Lines are centred on the cell edges: keep their outer half inside the area too.
        const qreal lineW = Pt(0.8);
        left += lineW / 2;
        width -= lineW;
        std::vector<qreal> w = NaturalWidths(t);
        const qreal natural = Sum(w);
        if (natural > 0)
            for (qreal& x : w) x *= width / natural;
        std::vector<qreal> xs{left};
        for (qreal x : w) xs.push_back(xs.back() + x);
        const qreal rowH = RowHeight();
        const qreal pad = Pt(kCellPadPt);

        QPen line(kLine);
        line.setWidthF(Pt(0.5));
        const int cols = static_cast<int>(w.size());
        for (int r = 0; r < static_cast<int>(t.rows.size()); ++r) {
            const bool header = r < t.headerRows, total = r == t.totalRow;
            const QFont font = Font(kTablePt, header || total);
            const QFontMetricsF fm = Metrics(font);
            for (int c = 0; c < cols; ++c) {
                const TMerge* m = MergeAt(t, c, r);
                if (m && (m->col != c || m->row != r)) continue;
                const int spanC = m ? std::min(m->cols, cols - c) : 1;
                const int spanR = m ? std::min<int>(m->rows, static_cast<int>(t.rows.size()) - r) : 1;
                const QRectF cellRect(xs[c], top + r * rowH, xs[c + spanC] - xs[c], rowH * spanR);
                if (header) p_.fillRect(cellRect, kHeaderFill);
                p_.setPen(line);
                p_.setBrush(Qt::NoBrush);
                p_.drawRect(cellRect);

                const TTableCell& cell = t.rows[r][c];
                QRectF textRect = cellRect.adjusted(pad, 0, -pad, 0);
                if (cell.swatch) {
                    const qreal s = Pt(kSwatchPt);
                    p_.fillRect(QRectF(textRect.left(), cellRect.center().y() - s / 2, s, s), *cell.swatch);
                    textRect.setLeft(textRect.left() + s + pad);
                }
                Qt::Alignment align = Qt::AlignVCenter;
                align |= m && m->cols > 1                  ? Qt::AlignHCenter
                         : cell.align == CellAlign::Right  ? Qt::AlignRight
                         : cell.align == CellAlign::Centre ? Qt::AlignHCenter
                                                           : Qt::AlignLeft;
                QFont cellFont = font;
                cellFont.setBold(font.bold() || cell.bold);
                p_.setFont(cellFont);
                p_.setPen(cell.colour);
                p_.drawText(textRect, align, fm.elidedText(cell.text, Qt::ElideRight, textRect.width()));
            }
            if (total) {
                QPen rule(Qt::black);
                rule.setWidthF(Pt(0.8));
                p_.setPen(rule);
                p_.drawLine(QPointF(xs.front(), top + r * rowH), QPointF(xs.back(), top + r * rowH));
            }
        }
        return top + rowH * static_cast<qreal>(t.rows.size());
    }

    void Draw() {
        p_.save();
        const qreal left = page_.left(), width = page_.width();
        qreal y = Title(QCoreApplication::translate("tessary::Report", "Portfolio Allocation"));

        const qreal classesLeft = left + width * (1 - kClassesShare);
        Heading(QCoreApplication::translate("tessary::Report", "Accounts"), left, y);
        const qreal top = Heading(QCoreApplication::translate("tessary::Report", "Targets"), classesLeft, y);
        const qreal accountsBottom = Table(accounts_, left, top, width * kAccountsShare);
        const qreal classesBottom = Table(classes_, classesLeft, top, width * kClassesShare);
        y = std::max(accountsBottom, classesBottom) + Pt(kGapPt);

        y = Heading(QCoreApplication::translate("tessary::Report", "Allocation"), left, y);
        y = Table(result_, left, y, std::min(width, Sum(NaturalWidths(result_)) * 1.25)) + Pt(kGapPt);

        const qreal footerTop = page_.bottom() - FooterHeight();
        if (hasChart_) {
            y = Heading(QCoreApplication::translate("tessary::Report", "Amounts by account type"), left, y);
            PaintAllocationChart(p_, QRectF(left, y, width, footerTop - y - Pt(kGapPt) / 2), in_.result, in_.locale);
        }

        Footer();
        p_.restore();
    }

    QPainter& p_;
    QRectF page_;
    const TReportInput& in_;
    qreal pxPerPt_;
    qreal fit_ = 1;
    TTable accounts_, classes_, result_, trades_;
    bool hasChart_ = false;
};

// The trades of the report, or none when it has no trades page.
std::optional<std::vector<TAccountTrades>> ReportTrades(const TReportInput& input) {
    if (!input.trades || !input.trades->Holdings.Any()) return std::nullopt;
    try {
        const TTargets targets = ReadTargets(input.result);
        if (targets.AccountTypes.empty()) return std::nullopt;
        return Rebalance(targets, input.trades->Holdings, input.trades->Options);
    } catch (const ERebalanceInput&) {
        // The window's notice says why; the report leaves the page out.
        return std::nullopt;
    }
}

} // namespace

bool ReportHasTrades(const TReportInput& input) { return ReportTrades(input).has_value(); }

void PaintTradesReport(QPainter& painter, const QRectF& page, const TReportInput& input) {
    if (const auto trades = ReportTrades(input)) TReportPainter(painter, page, input).PaintTrades(*trades);
}

void PaintReport(QPainter& painter, const QRectF& page, const TReportInput& input) {
    TReportPainter(painter, page, input).Paint();
}

void PrintReport(QPagedPaintDevice& device, const TReportInput& input) {
    QPainter painter;
    if (!painter.begin(&device))
        throw EExport(QCoreApplication::translate("tessary::Report", "The report cannot be painted on this device.")
                          .toStdString());
    const QRect paint = device.pageLayout().paintRectPixels(device.logicalDpiY());
    const QRectF page(QPointF(0, 0), QSizeF(paint.size()));
    PaintReport(painter, page, input);
    if (ReportHasTrades(input)) {
        device.newPage();
        PaintTradesReport(painter, page, input);
    }
    painter.end();
}

void WriteReportPdf(const QString& path, const TReportInput& input) {
    QSaveFile file(path);
    auto fail = [&](const QString& reason) {
        throw EExport(
            QCoreApplication::translate("tessary::Report", "Cannot write \"%1\": %2").arg(path, reason).toStdString());
    };
    if (!file.open(QIODevice::WriteOnly)) fail(file.errorString());
    {
        QPdfWriter writer(&file);
        writer.setPageSize(QPageSize(QPageSize::Letter));
        writer.setPageMargins(QMarginsF(15, 15, 15, 15), QPageLayout::Millimeter);
        writer.setTitle(QCoreApplication::translate("tessary::Report", "Portfolio Allocation"));
        writer.setCreator(QStringLiteral("Tessary"));
        PrintReport(writer, input);
    }
    if (file.error() != QFileDevice::NoError) fail(file.errorString());
    if (!file.commit()) fail(file.errorString());
}

void WriteAllocationReportPdf(const QString& path, const TGrid& accounts, const TGrid& classes, const TGrid& result) {
    WriteTradesReportPdf(path, accounts, classes, result, {});
}

void WriteTradesReportPdf(const QString& path, const TGrid& accounts, const TGrid& classes, const TGrid& result,
                          const TTradesInput& trades) {
    if (!qobject_cast<QApplication*>(QCoreApplication::instance()))
        throw EExport(QCoreApplication::translate("tessary::Report",
                                                  "The PDF report needs the program's graphical part (QApplication).")
                          .toStdString());
    WriteReportPdf(path, {accounts, classes, result, QDate::currentDate(), AppLocale(), &trades});
}

} // namespace tessary
