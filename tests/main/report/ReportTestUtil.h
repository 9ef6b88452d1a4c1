// Grids made the way the window and the command line make them.
#pragma once

#include <QByteArray>
#include <QFile>
#include <QRegularExpression>
#include <QString>
#include <string>

#include "core/Allocation.h"
#include "core/CsvInput.h"
#include "core/Totals.h"

namespace tessary::test {

struct TGrids {
    TGrid accounts = MakeAccountsGrid();
    TGrid classes = MakeClassesGrid();
    TGrid result = MakeResultGrid();
};

// The inputs from CSV texts, then a calculation unless told otherwise.
inline TGrids FromCsv(const std::string& accounts, const std::string& classes, bool calculate = true) {
    TGrids g;
    LoadAccountsCsv(accounts, g.accounts);
    LoadClassesCsv(classes, g.classes);
    if (calculate) CalculateAllocation(g.accounts, g.classes, g.result, kDesignAddAccWidth);
    return g;
}

inline std::string SampleFile(const char* name) {
    QFile f(QStringLiteral(TESSARY_SAMPLES "/") + QLatin1String(name));
    if (!f.open(QIODevice::ReadOnly)) return {};
    return f.readAll().toStdString();
}

inline TGrids Sample() { return FromCsv(SampleFile("accounts.csv"), SampleFile("classes.csv")); }

inline QByteArray ReadBytes(const QString& path) {
    QFile f(path);
    return f.open(QIODevice::ReadOnly) ? f.readAll() : QByteArray();
}

// Pages of a PDF: the page objects, and the count the page tree declares.
struct PdfPages {
    int objects = 0;
    int declared = -1;
};

inline PdfPages CountPages(const QByteArray& pdf) {
    PdfPages p;
    const QByteArray page = "/Type /Page";
    for (qsizetype at = pdf.indexOf(page); at >= 0; at = pdf.indexOf(page, at + 1)) {
        const char next = at + page.size() < pdf.size() ? pdf[at + page.size()] : ' ';
        if (next != 's') ++p.objects;
    }
    const auto m = QRegularExpression(QStringLiteral("/Type /Pages[^>]*/Count (\\d+)")).match(QString::fromLatin1(pdf));
    if (m.hasMatch()) p.declared = m.captured(1).toInt();
    return p;
}

} // namespace tessary::test
