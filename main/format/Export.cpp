#include "format/Export.h"

#include <QCoreApplication>
#include <QLocale>
#include <QSaveFile>
#include <algorithm>
#include <cmath>

namespace tessary {

namespace {

// Decimals of the grid's display format for a float cell.
int DisplayDecimals(GridKind kind, int col, int row) {
    if (kind == GridKind::Result && !(col > 0 && row > 1)) return 2;
    return 0;
}

TCellRange Clipped(const TGrid& grid, TCellRange r) {
    r.left = std::max(r.left, 0);
    r.top = std::max(r.top, 0);
    r.right = std::min(r.right, grid.ColCount() - 1);
    r.bottom = std::min(r.bottom, grid.RowCount() - 1);
    return r;
}

template <typename Field>
QString Join(const TGrid& grid, GridKind kind, const TCellRange& range, QChar sep, const char* eol, Field field) {
    const TCellRange r = Clipped(grid, range);
    QString out;
    for (int row = r.top; row <= r.bottom; ++row) {
        for (int col = r.left; col <= r.right; ++col) {
            if (col > r.left) out += sep;
            out += field(ExportText(grid, kind, col, row));
        }
        if (r.left <= r.right) out += QLatin1String(eol);
    }
    return out;
}

} // namespace

TCellRange WholeGrid(const TGrid& grid) { return {0, 0, grid.ColCount() - 1, grid.RowCount() - 1}; }

QString ExportText(const TGrid& grid, GridKind kind, int col, int row) {
    const TCell& cell = grid.Cell(col, row);
    if (const auto* s = std::get_if<std::string>(&cell.value)) return QString::fromStdString(*s);
    const auto* d = std::get_if<double>(&cell.value);
    if (!d) return {};
    if (std::isnan(*d)) return QStringLiteral("nan");
    if (std::isinf(*d)) return *d > 0 ? QStringLiteral("inf") : QStringLiteral("-inf");
    QLocale c = QLocale::c();
    c.setNumberOptions(QLocale::OmitGroupSeparator);
    QString text = c.toString(*d, 'f', DisplayDecimals(kind, col, row));
    // A small negative rounds to "-0"; a zero carries no sign.
    if (text.startsWith(QLatin1Char('-')) && c.toDouble(text) == 0) text.remove(0, 1);
    return text;
}

QString GridAsTsv(const TGrid& grid, GridKind kind, const TCellRange& range) {
    return Join(grid, kind, range, QLatin1Char('\t'), "\n", [](QString text) {
        for (QChar& ch : text)
            if (ch == QLatin1Char('\t') || ch == QLatin1Char('\n') || ch == QLatin1Char('\r')) ch = QLatin1Char(' ');
        return text;
    });
}

QString GridAsCsv(const TGrid& grid, GridKind kind, const TCellRange& range) {
    return Join(grid, kind, range, QLatin1Char(','), "\r\n", [](QString text) {
        if (!text.contains(QLatin1Char(',')) && !text.contains(QLatin1Char('"')) && !text.contains(QLatin1Char('\n')) &&
            !text.contains(QLatin1Char('\r')))
            return text;
        text.replace(QLatin1Char('"'), QLatin1String("\"\""));
        return QLatin1Char('"') + text + QLatin1Char('"');
    });
}

void SaveCsv(const QString& path, const QString& csv) {
    QSaveFile file(path);
    const QByteArray bytes = QByteArray("\xEF\xBB\xBF") + csv.toUtf8();
    if (!file.open(QIODevice::WriteOnly) || file.write(bytes) != bytes.size() || !file.commit())
        throw EExport(QCoreApplication::translate("tessary::Export", "Cannot write \"%1\": %2")
                          .arg(path, file.errorString())
                          .toStdString());
}

} // namespace tessary
