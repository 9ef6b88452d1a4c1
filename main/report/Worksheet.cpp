#include "report/Worksheet.h"

#include <QCoreApplication>
#include <QFile>
#include <QFileInfo>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QSaveFile>
#include <cerrno>
#include <cmath>
#include <cstring>

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include "core/Allocation.h"
#include "core/Totals.h"
#include "core/Vocabulary.h"

namespace tessary {

namespace {

// Far beyond any worksheet; keeps a stray huge file from being read whole.
constexpr qint64 kMaxBytes = 64 << 20;
// Integers a JSON number carries exactly.
constexpr double kMaxExactInteger = 9007199254740992.0;

QJsonValue CellToJson(const TCell& cell) {
    if (const auto* s = std::get_if<std::string>(&cell.value)) return QString::fromStdString(*s);
    if (const auto* d = std::get_if<double>(&cell.value)) {
        if (std::isfinite(*d) && !(*d == 0 && std::signbit(*d))) return *d;
        // JSON numbers have no infinities, no NaN and (once read) no negative
        // zero; a wrapped text keeps these apart from text cells.
        QJsonObject o;
        o.insert(QStringLiteral("number"), std::isnan(*d) ? QStringLiteral("nan")
                                           : *d == 0      ? QStringLiteral("-0")
                                           : *d > 0       ? QStringLiteral("inf")
                                                          : QStringLiteral("-inf"));
        return o;
    }
    return QJsonValue::Null;
}

QJsonObject RowToJson(const TGrid& grid, int row) {
    QJsonArray cells;
    for (int c = 0; c < grid.ColCount(); ++c) cells.append(CellToJson(grid.Cell(c, row)));
    QJsonObject o;
    o.insert(QStringLiteral("cells"), cells);
    if (const std::intptr_t object = grid.Object(0, row); object != 0)
        o.insert(QStringLiteral("object"), static_cast<double>(object));
    return o;
}

QJsonObject BodyToJson(const TGrid& grid) {
    QJsonArray rows;
    for (int r = grid.FixedRows(); r < grid.RowCount(); ++r) rows.append(RowToJson(grid, r));
    QJsonObject o;
    o.insert(QStringLiteral("rows"), rows);
    return o;
}

QJsonObject ResultToJson(const TGrid& grid) {
    QJsonArray rows;
    for (int r = 0; r < grid.RowCount(); ++r) rows.append(RowToJson(grid, r));
    QJsonArray merges;
    for (const TMerge& m : grid.Merges()) merges.append(QJsonArray{m.col, m.row, m.cols, m.rows});
    QJsonObject o;
    o.insert(QStringLiteral("columns"), grid.ColCount());
    o.insert(QStringLiteral("rows"), rows);
    o.insert(QStringLiteral("merges"), merges);
    return o;
}

// Only the pairs given, in the holdings CSV's order: a cell left empty stays
// apart from one holding 0.
QJsonObject TradesToJson(const TTradesInput& trades) {
    QJsonArray rows;
    for (int t = 1; t <= kAccountTypeCount; ++t)
        for (int c = 1; c <= kAssetClassCount; ++c)
            if (trades.Holdings.Named(t, c))
                rows.append(QJsonObject{{QStringLiteral("account"), QString::fromUtf8(AccountTypeLabel(t).data())},
                                        {QStringLiteral("class"), QString::fromUtf8(AssetClassLabel(c).data())},
                                        {QStringLiteral("amount"), CellToJson(TCell{trades.Holdings.Get(t, c), 0})}});
    QJsonObject o;
    o.insert(QStringLiteral("band"), trades.Options.BandPercent);
    o.insert(QStringLiteral("noSellTaxable"), trades.Options.NoSellTaxable);
    o.insert(QStringLiteral("rows"), rows);
    return o;
}

// Reads one document; every problem is a Damaged fault naming the file and the place.
class TReader {
public:
    explicit TReader(const QString& fileName) : fileName_(fileName) {}

    [[noreturn]] void Damaged(const QString& detail) const {
        throw EWorksheet(EWorksheet::Fault::Damaged,
                         QCoreApplication::translate("tessary::Worksheet", "The worksheet \"%1\" is damaged: %2.")
                             .arg(fileName_, detail));
    }

    QJsonObject Object(const QJsonObject& parent, const char* key, const QString& where) const {
        const QJsonValue v = parent.value(QLatin1String(key));
        if (!v.isObject())
            Damaged(QCoreApplication::translate("tessary::Worksheet", "%1 has no \"%2\" object")
                        .arg(where, QLatin1String(key)));
        return v.toObject();
    }

    QJsonArray Array(const QJsonValue& v, const QString& what) const {
        if (!v.isArray())
            Damaged(QCoreApplication::translate("tessary::Worksheet", "%1 is missing or not a list").arg(what));
        return v.toArray();
    }

    double Integer(const QJsonValue& v, const QString& what, double min, double max) const {
        const double d = v.toDouble(std::nan(""));
        if (!v.isDouble() || d != std::floor(d) || d < min || d > max)
            Damaged(QCoreApplication::translate("tessary::Worksheet", "%1 is not a whole number from %2 to %3")
                        .arg(what)
                        .arg(min, 0, 'f', 0)
                        .arg(max, 0, 'f', 0));
        return d;
    }

    void Cell(const QJsonValue& v, TGrid& grid, int col, int row, const QString& where) const {
        switch (v.type()) {
            case QJsonValue::Null: return;
            case QJsonValue::String: grid.SetText(col, row, v.toString().toStdString()); return;
            case QJsonValue::Double: grid.SetFloat(col, row, v.toDouble()); return;
            case QJsonValue::Object: {
                const QJsonObject o = v.toObject();
                const QString n = o.value(QStringLiteral("number")).toString();
                if (o.size() == 1 && (n == QLatin1String("inf") || n == QLatin1String("-inf") ||
                                      n == QLatin1String("nan") || n == QLatin1String("-0"))) {
                    double d = 0;
                    ParseNumber(n.toStdString(), d);
                    grid.SetFloat(col, row, d);
                    return;
                }
                break;
            }
            default: break;
        }
        Damaged(QCoreApplication::translate("tessary::Worksheet", "cell %1 of %2 is neither empty, a text nor a number")
                    .arg(col + 1)
                    .arg(where));
    }

    // One row object {"cells": [...], "object": n} into grid row `row`.
    void Row(const QJsonValue& v, TGrid& grid, int row, const QString& where) const {
        if (!v.isObject()) Damaged(QCoreApplication::translate("tessary::Worksheet", "%1 is not an object").arg(where));
        const QJsonObject o = v.toObject();
        const QJsonArray cells =
            Array(o.value(QStringLiteral("cells")),
                  QCoreApplication::translate("tessary::Worksheet", "the cell list of %1").arg(where));
        if (cells.size() != grid.ColCount())
            Damaged(QCoreApplication::translate("tessary::Worksheet", "%1 has %2 cells, not %3")
                        .arg(where)
                        .arg(cells.size())
                        .arg(grid.ColCount()));
        for (int c = 0; c < grid.ColCount(); ++c) Cell(cells[c], grid, c, row, where);
        if (o.contains(QStringLiteral("object")))
            grid.SetObject(0, row,
                           static_cast<std::intptr_t>(
                               Integer(o.value(QStringLiteral("object")),
                                       QCoreApplication::translate("tessary::Worksheet", "the object of %1").arg(where),
                                       -kMaxExactInteger, kMaxExactInteger)));
    }

    // Body rows after the grid's own header; each row as wide as the window's grid.
    void Body(const QJsonObject& doc, const char* key, const QString& name, TGrid& grid) const {
        const QJsonObject section = Object(doc, key, QCoreApplication::translate("tessary::Worksheet", "the document"));
        const QJsonArray rows =
            Array(section.value(QStringLiteral("rows")),
                  QCoreApplication::translate("tessary::Worksheet", "the row list of the %1").arg(name));
        grid.SetRowCount(grid.FixedRows());
        for (qsizetype i = 0; i < rows.size(); ++i)
            Row(rows[i], grid, grid.AddRow(),
                QCoreApplication::translate("tessary::Worksheet", "%1 row %2").arg(name).arg(i + 1));
    }

    void Result(const QJsonObject& doc, TGrid& grid) const {
        const QJsonObject section =
            Object(doc, "result", QCoreApplication::translate("tessary::Worksheet", "the document"));
        const QJsonArray rows = Array(section.value(QStringLiteral("rows")),
                                      QCoreApplication::translate("tessary::Worksheet", "the row list of the result"));
        if (rows.size() < grid.FixedRows())
            Damaged(QCoreApplication::translate("tessary::Worksheet", "the result has fewer than its %1 header rows")
                        .arg(grid.FixedRows()));
        const int columns = static_cast<int>(
            Integer(section.value(QStringLiteral("columns")),
                    QCoreApplication::translate("tessary::Worksheet", "the result's column count"), 1, 1 << 20));
        // Sizes first: a short document must not make a large grid.
        for (qsizetype i = 0; i < rows.size(); ++i)
            if (rows[i].toObject().value(QStringLiteral("cells")).toArray().size() != columns)
                Damaged(QCoreApplication::translate("tessary::Worksheet", "result row %1 does not have %2 cells")
                            .arg(i + 1)
                            .arg(columns));
        grid.SetColCount(columns);
        grid.SetRowCount(static_cast<int>(rows.size()));
        for (qsizetype i = 0; i < rows.size(); ++i)
            Row(rows[i], grid, static_cast<int>(i),
                QCoreApplication::translate("tessary::Worksheet", "result row %1").arg(i + 1));

        const QJsonArray merges =
            Array(section.value(QStringLiteral("merges")),
                  QCoreApplication::translate("tessary::Worksheet", "the merge list of the result"));
        for (qsizetype i = 0; i < merges.size(); ++i) {
            const QString what =
                QCoreApplication::translate("tessary::Worksheet", "merged cell %1 of the result").arg(i + 1);
            const QJsonArray a = Array(merges[i], what);
            if (a.size() != 4)
                Damaged(QCoreApplication::translate("tessary::Worksheet", "%1 does not have 4 numbers").arg(what));
            const int col = static_cast<int>(Integer(a[0], what, 0, columns - 1));
            const int row = static_cast<int>(Integer(a[1], what, 0, grid.RowCount() - 1));
            const int cols = static_cast<int>(Integer(a[2], what, 1, 1 << 20));
            const int span = static_cast<int>(Integer(a[3], what, 1, 1 << 20));
            grid.Merge(col, row, cols, span);
        }

        // Widths are not stored: the calculation's at design size.
        grid.SetColWidth(0, MakeResultGrid().ColWidth(0));
        for (int c = 1; c < columns; ++c)
            grid.SetColWidth(c, columns == 2 ? MakeResultGrid().ColWidth(1) : (c % 2 == 1 ? 25 : 60));
    }

    void Holdings(const QJsonObject& doc, TTradesInput& trades) const {
        const QJsonObject section =
            Object(doc, "holdings", QCoreApplication::translate("tessary::Worksheet", "the document"));
        const QJsonValue band = section.value(QStringLiteral("band"));
        if (!band.isDouble() || !(band.toDouble() >= 0 && band.toDouble() <= 100))
            Damaged(QCoreApplication::translate("tessary::Worksheet", "the band is not a number from 0 to 100"));
        if (!section.value(QStringLiteral("noSellTaxable")).isBool())
            Damaged(QCoreApplication::translate("tessary::Worksheet", "\"noSellTaxable\" is not true or false"));
        trades.Options = {band.toDouble(), section.value(QStringLiteral("noSellTaxable")).toBool()};
        const QJsonArray rows =
            Array(section.value(QStringLiteral("rows")),
                  QCoreApplication::translate("tessary::Worksheet", "the row list of the holdings"));
        for (qsizetype i = 0; i < rows.size(); ++i) {
            const QString where = QCoreApplication::translate("tessary::Worksheet", "holdings row %1").arg(i + 1);
            const QJsonObject o = rows[i].toObject();
            int type = 0;
            for (int t = 1; t <= kAccountTypeCount && type == 0; ++t)
                if (o.value(QStringLiteral("account")).toString().toStdString() == AccountTypeLabel(t)) type = t;
            const int cls = AssetClassOf(o.value(QStringLiteral("class")).toString().toStdString());
            if (type == 0 || cls == 0)
                Damaged(QCoreApplication::translate("tessary::Worksheet", "%1 names no known account type and class")
                            .arg(where));
            TGrid cell(1, 1);
            Cell(o.value(QStringLiteral("amount")), cell, 0, 0, where);
            if (!cell.Cell(0, 0).IsFloat())
                Damaged(QCoreApplication::translate("tessary::Worksheet", "%1 has no amount").arg(where));
            trades.Holdings.Add(type, cls, cell.Float(0, 0));
        }
    }

private:
    QString fileName_;
};

bool LooksLikeJsonObject(const QByteArray& bytes) {
    for (char c : bytes) {
        if (c == ' ' || c == '\t' || c == '\r' || c == '\n') continue;
        return c == '{';
    }
    return false;
}

} // namespace

EWorksheet::EWorksheet(Fault fault, const QString& message)
    : std::runtime_error(message.toStdString()), fault_(fault) {}

TWorksheet::TWorksheet() : accounts(MakeAccountsGrid()), classes(MakeClassesGrid()), result(MakeResultGrid()) {}

QByteArray WorksheetToJson(const TGrid& accounts, const TGrid& classes, const TGrid& result,
                           const TTradesInput& trades) {
    QJsonObject doc;
    doc.insert(QStringLiteral("format"), QLatin1String(kWorksheetFormat));
    doc.insert(QStringLiteral("version"), kWorksheetVersion);
    doc.insert(QStringLiteral("accounts"), BodyToJson(accounts));
    doc.insert(QStringLiteral("classes"), BodyToJson(classes));
    doc.insert(QStringLiteral("result"), ResultToJson(result));
    doc.insert(QStringLiteral("holdings"), TradesToJson(trades));
    return QJsonDocument(doc).toJson(QJsonDocument::Indented);
}

TWorksheet WorksheetFromJson(const QByteArray& bytes, const QString& fileName) {
    const TReader reader(fileName);
    if (bytes.trimmed().isEmpty())
        reader.Damaged(QCoreApplication::translate("tessary::Worksheet", "the file is empty"));

    QJsonParseError error{};
    const QJsonDocument json = QJsonDocument::fromJson(bytes, &error);
    if (error.error != QJsonParseError::NoError) {
        if (!LooksLikeJsonObject(bytes))
            throw EWorksheet(
                EWorksheet::Fault::Foreign,
                QCoreApplication::translate("tessary::Worksheet", "\"%1\" is not a Tessary worksheet.").arg(fileName));
        reader.Damaged(QCoreApplication::translate("tessary::Worksheet", "%1 at byte %2")
                           .arg(error.errorString())
                           .arg(error.offset));
    }
    const QJsonObject doc = json.object();
    if (!json.isObject() || doc.value(QStringLiteral("format")).toString() != QLatin1String(kWorksheetFormat))
        throw EWorksheet(
            EWorksheet::Fault::Foreign,
            QCoreApplication::translate("tessary::Worksheet", "\"%1\" is not a Tessary worksheet.").arg(fileName));

    const QJsonValue version = doc.value(QStringLiteral("version"));
    const double v =
        reader.Integer(version, QCoreApplication::translate("tessary::Worksheet", "the version"), 1, kMaxExactInteger);
    if (v > kWorksheetVersion)
        throw EWorksheet(EWorksheet::Fault::Newer,
                         QCoreApplication::translate(
                             "tessary::Worksheet",
                             "\"%1\" was saved by a newer Tessary (worksheet version %2; this one reads version %3).")
                             .arg(fileName)
                             .arg(v, 0, 'f', 0)
                             .arg(kWorksheetVersion));

    TWorksheet sheet;
    reader.Body(doc, "accounts", QCoreApplication::translate("tessary::Worksheet", "accounts"), sheet.accounts);
    reader.Body(doc, "classes", QCoreApplication::translate("tessary::Worksheet", "classes"), sheet.classes);
    reader.Result(doc, sheet.result);
    if (v >= 2) reader.Holdings(doc, sheet.trades);
    return sheet;
}

void SaveWorksheet(const QString& path, const TGrid& accounts, const TGrid& classes, const TGrid& result,
                   const TTradesInput& trades) {
    const QByteArray bytes = WorksheetToJson(accounts, classes, result, trades);
    QSaveFile file(path);
    auto fail = [&] {
        throw EWorksheet(EWorksheet::Fault::Unwritable,
                         QCoreApplication::translate("tessary::Worksheet", "Cannot save the worksheet \"%1\": %2")
                             .arg(path, file.errorString()));
    };
    if (!file.open(QIODevice::WriteOnly)) fail();
    if (file.write(bytes) != bytes.size()) fail();
    if (!file.commit()) fail();
}

TWorksheet ReadWorksheet(const QString& path) {
    QFile file(path);
    auto fail = [&](const QString& reason) {
        throw EWorksheet(EWorksheet::Fault::Unreadable,
                         QCoreApplication::translate("tessary::Worksheet", "Cannot open the worksheet \"%1\": %2")
                             .arg(path, reason));
    };
    // Opened without blocking, so that a FIFO in its place is refused rather
    // than waited on; QFile then reads through the same descriptor.
    const int fd = ::open(QFile::encodeName(path).constData(), O_RDONLY | O_CLOEXEC | O_NONBLOCK);
    if (fd < 0) fail(QString::fromLocal8Bit(std::strerror(errno)));
    struct stat st {};
    if (::fstat(fd, &st) != 0 || !S_ISREG(st.st_mode)) {
        ::close(fd);
        fail(S_ISDIR(st.st_mode) ? QCoreApplication::translate("tessary::Worksheet", "it is a folder")
                                 : QCoreApplication::translate("tessary::Worksheet", "it is not a regular file"));
    }
    if (!file.open(fd, QIODevice::ReadOnly, QFileDevice::AutoCloseHandle)) {
        ::close(fd);
        fail(file.errorString());
    }
    if (file.size() > kMaxBytes)
        throw EWorksheet(
            EWorksheet::Fault::Foreign,
            QCoreApplication::translate("tessary::Worksheet", "\"%1\" is not a Tessary worksheet.").arg(path));
    const QByteArray bytes = file.readAll();
    if (file.error() != QFileDevice::NoError) fail(file.errorString());
    return WorksheetFromJson(bytes, path);
}

void LoadWorksheet(const QString& path, TGrid& accounts, TGrid& classes, TGrid& result, TTradesInput* trades) {
    TWorksheet sheet = ReadWorksheet(path);
    if (trades) *trades = sheet.trades;
    accounts = std::move(sheet.accounts);
    classes = std::move(sheet.classes);
    result = std::move(sheet.result);
}

} // namespace tessary
