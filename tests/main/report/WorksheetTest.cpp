#include <gtest/gtest.h>

#include <QDir>
#include <QFileInfo>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QTemporaryDir>
#include <cmath>
#include <cstring>
#include <functional>
#include <limits>
#include <unistd.h>

#include "ReportTestUtil.h"
#include "format/GridFormat.h"
#include "report/Worksheet.h"

using namespace tessary;
using namespace tessary::test;

namespace {

void ExpectSameGrid(const TGrid& want, const TGrid& got) {
    ASSERT_EQ(got.ColCount(), want.ColCount());
    ASSERT_EQ(got.RowCount(), want.RowCount());
    for (int r = 0; r < want.RowCount(); ++r) {
        EXPECT_EQ(got.Object(0, r), want.Object(0, r)) << "row " << r;
        for (int c = 0; c < want.ColCount(); ++c) {
            const TCell &a = want.Cell(c, r), &b = got.Cell(c, r);
            ASSERT_EQ(a.value.index(), b.value.index()) << "cell " << c << "," << r;
            const auto* x = std::get_if<double>(&a.value);
            const double y = b.IsFloat() ? std::get<double>(b.value) : 0;
            if (!x) {
                EXPECT_EQ(got.Text(c, r), want.Text(c, r));
            } else if (!std::isnan(*x) || !std::isnan(y)) {   // bit for bit: the sign of a zero, the last digit
                EXPECT_EQ(std::memcmp(x, &y, sizeof y), 0) << *x << " vs " << y << " at " << c << "," << r;
            }
        }
    }
    ASSERT_EQ(got.Merges().size(), want.Merges().size());
    for (const TMerge& m : want.Merges()) {
        const TMerge* g = got.MergeAt(m.col, m.row);
        ASSERT_TRUE(g);
        EXPECT_EQ(std::tie(g->col, g->row, g->cols, g->rows), std::tie(m.col, m.row, m.cols, m.rows));
    }
}

void ExpectSameGrids(const TGrids& want, const TGrids& got) {
    ExpectSameGrid(want.accounts, got.accounts);
    ExpectSameGrid(want.classes, got.classes);
    ExpectSameGrid(want.result, got.result);
}

// Targets with content of their own, to see that a failed load leaves them alone.
TGrids Occupied() { return FromCsv("h\nkept,7\n", "h\nEquities Global,100\n"); }

TGrids OddCells() {
    const double inf = std::numeric_limits<double>::infinity(), nan = std::nan("");
    TGrids g = FromCsv("h\nÉpargne — 日本 🙂,0.3\nNon-Reg.\nx\nx\n", "h\nÉquités,33.3\nnan,-1.5e-7\n", false);
    TGrid& a = g.accounts;
    a.SetText(1, 2, "abc");   // text where a number belongs
    a.SetText(2, 2, "12");    // a number typed as text stays text
    a.SetFloat(3, 2, 1e308);
    a.SetFloat(4, 2, -0.0);
    a.SetObject(0, 3, 7);
    a.SetText(0, 3, "\"quoted\", comma\nnewline\ttab");
    a.SetFloat(1, 3, 5e-324);
    a.SetFloat(2, 3, nan);
    a.SetFloat(3, 3, -inf);
    a.SetText(4, 3, "inf");   // the text, not the number
    a.SetObject(0, 4, std::intptr_t{1} << 40);
    a.SetFloat(1, 4, inf);
    g.classes.SetObject(0, 1, -3);
    g.result.SetColCount(4);
    g.result.SetRowCount(5);
    g.result.SetFloat(2, 3, nan);
    g.result.SetObject(0, 4, 9);
    g.result.Merge(1, 0, 3, 1);
    return g;
}

struct RoundTripCase {
    const char* name;
    std::function<TGrids()> make;
};

class WorksheetRoundTrip : public ::testing::TestWithParam<RoundTripCase> {};

TEST_P(WorksheetRoundTrip, LoadGivesTheSavedGridsAndSavesTheSameBytes) {
    const TGrids saved = GetParam().make();
    QTemporaryDir dir;
    const QString path = dir.filePath(QStringLiteral("client.tessary"));
    SaveWorksheet(path, saved.accounts, saved.classes, saved.result);

    TGrids loaded = Occupied();
    LoadWorksheet(path, loaded.accounts, loaded.classes, loaded.result);
    ExpectSameGrids(saved, loaded);
    EXPECT_EQ(WorksheetToJson(loaded.accounts, loaded.classes, loaded.result), ReadBytes(path));
    // The window shows a loaded result as it showed the saved one.
    EXPECT_EQ(FormatGridText(loaded.result, GridKind::Result, AppLocale()),
              FormatGridText(saved.result, GridKind::Result, AppLocale()));
}

INSTANTIATE_TEST_SUITE_P(
    Grids, WorksheetRoundTrip,
    ::testing::Values(
        RoundTripCase{"StartUp", [] { return TGrids{}; }},
        RoundTripCase{"NoRows", [] { return FromCsv("h\n", "h\n"); }},
        RoundTripCase{"Sample", Sample},
        RoundTripCase{"NonFinite",
                      [] { return FromCsv("h\nNon-Reg.,100\nTFSAs,-50\n", "h\nEquities Canada,100\nShort-Term Fixed,10\n"); }},
        RoundTripCase{"StaleSpareColumns",
                      [] {
                          TGrids g = Sample();
                          LoadAccountsCsv("h\nTFSAs,100\nTFSAs,300\n", g.accounts);   // the second overwrites the first
                          CalculateAllocation(g.accounts, g.classes, g.result, kDesignAddAccWidth);
                          return g;
                      }},
        RoundTripCase{"OddCells", OddCells}),
    [](const auto& info) { return std::string(info.param.name); });

// Sets the value at a slash path ("accounts/rows/1/cells/2") of a JSON tree.
QJsonValue SetAt(QJsonValue node, QStringList path, const QJsonValue& value) {
    if (path.isEmpty()) return value;
    const QString key = path.takeFirst();
    if (node.isArray()) {
        QJsonArray a = node.toArray();
        a[key.toInt()] = SetAt(a[key.toInt()], path, value);
        return a;
    }
    QJsonObject o = node.toObject();
    if (value.isUndefined() && path.isEmpty())
        o.remove(key);
    else
        o.insert(key, SetAt(o.value(key), path, value));
    return o;
}

struct BadCase {
    const char* name;
    const char* path;   // where to spoil a sound document; empty: use bytes
    QJsonValue value;   // undefined removes the key
    QByteArray bytes;
    EWorksheet::Fault fault;
    const char* says;
};

using F = EWorksheet::Fault;
const QJsonValue kRemove(QJsonValue::Undefined);

const BadCase kBadCases[] = {
    {"Empty", "", {}, " \r\n", F::Damaged, "empty"},
    {"PlainText", "", {}, "Short-Term Fixed,10\n", F::Foreign, "not a Tessary worksheet"},
    {"CommandLineJson", "", {}, GridToJson(MakeResultGrid()).toJson(), F::Foreign, "not a Tessary worksheet"},
    {"OtherFormat", "format", "tessary-presets", {}, F::Foreign, "not a Tessary worksheet"},
    {"NoFormat", "format", kRemove, {}, F::Foreign, "not a Tessary worksheet"},
    {"NextVersion", "version", kWorksheetVersion + 1, {}, F::Newer, "newer"},
    {"VersionFraction", "version", 1.5, {}, F::Damaged, "version"},
    {"NoClasses", "classes", kRemove, {}, F::Damaged, "\"classes\""},
    {"ShortRow", "accounts/rows/1/cells", QJsonArray{"TFSAs", 1, 2, 3}, {}, F::Damaged, "accounts row 2 has 4 cells, not 5"},
    {"BooleanCell", "classes/rows/0/cells/1", true, {}, F::Damaged, "cell 2 of classes row 1"},
    {"UnknownNumberWord", "classes/rows/0/cells/1", QJsonObject{{"number", "huge"}}, {}, F::Damaged, "cell 2 of classes row 1"},
    {"FractionObject", "classes/rows/2/object", 2.5, {}, F::Damaged, "object of classes row 3"},
    {"HugeColumnsShortRows", "result/columns", 1000000, {}, F::Damaged, "result row 1"},
    {"OneResultRow", "result/rows", QJsonArray{QJsonObject{{"cells", QJsonArray{1}}}}, {}, F::Damaged, "header rows"},
    {"MergeOutside", "result/merges", QJsonArray{QJsonArray{15, 0, 2, 1}}, {}, F::Damaged, "merged cell 1"},
};

class WorksheetBad : public ::testing::TestWithParam<BadCase> {};

TEST_P(WorksheetBad, ThrowsItsMessageAndLeavesTheGridsAlone) {
    const BadCase& k = GetParam();
    const TGrids s = Sample();
    QByteArray bytes = k.bytes;
    if (*k.path) {
        const QJsonValue doc = QJsonDocument::fromJson(WorksheetToJson(s.accounts, s.classes, s.result)).object();
        bytes = QJsonDocument(SetAt(doc, QString::fromLatin1(k.path).split('/'), k.value).toObject()).toJson();
    }
    QTemporaryDir dir;
    const QString path = dir.filePath(QStringLiteral("bad.tessary"));
    QFile f(path);
    ASSERT_TRUE(f.open(QIODevice::WriteOnly));
    f.write(bytes);
    f.close();

    TGrids target = Occupied();
    try {
        LoadWorksheet(path, target.accounts, target.classes, target.result);
        FAIL() << "loaded";
    } catch (const EWorksheet& e) {
        EXPECT_EQ(e.GetFault(), k.fault) << e.what();
        EXPECT_NE(std::string(e.what()).find(path.toStdString()), std::string::npos) << e.what();
        EXPECT_NE(std::string(e.what()).find(k.says), std::string::npos) << e.what();
    }
    ExpectSameGrids(Occupied(), target);
}

INSTANTIATE_TEST_SUITE_P(Documents, WorksheetBad, ::testing::ValuesIn(kBadCases),
                         [](const auto& info) { return std::string(info.param.name); });

TEST(Worksheet, EveryTruncationIsDamaged) {
    const TGrids s = Sample();
    const QByteArray whole = WorksheetToJson(s.accounts, s.classes, s.result);
    for (qsizetype n = 0; n + 1 < whole.size(); ++n) {   // cut anywhere before the closing brace
        try {
            WorksheetFromJson(whole.left(n), QStringLiteral("cut.tessary"));
            ADD_FAILURE() << "a document cut at " << n << " loaded";
        } catch (const EWorksheet& e) {
            ASSERT_EQ(e.GetFault(), EWorksheet::Fault::Damaged) << "cut at " << n << ": " << e.what();
        }
    }
}

TEST(Worksheet, UnreadablePathsNameTheFile) {
    QTemporaryDir dir;
    for (const QString& path : {dir.filePath(QStringLiteral("missing.tessary")), dir.path()}) {
        TGrids target = Occupied();
        try {
            LoadWorksheet(path, target.accounts, target.classes, target.result);
            ADD_FAILURE() << "loaded " << path.toStdString();
        } catch (const EWorksheet& e) {
            EXPECT_EQ(e.GetFault(), EWorksheet::Fault::Unreadable);
            EXPECT_NE(std::string(e.what()).find(path.toStdString()), std::string::npos) << e.what();
        }
    }
}

// Runs f with an ordinary user's rights: root ignores a read-only folder.
bool AsOrdinaryUser(const std::function<void()>& f) {
    if (geteuid() != 0) {
        f();
        return true;
    }
    if (seteuid(65534) != 0) return false;
    f();
    return seteuid(0) == 0;
}

TEST(WorksheetSave, AFailedSaveKeepsThePreviousFile) {
    QTemporaryDir dir;
    const QString path = dir.filePath(QStringLiteral("client.tessary"));
    const TGrids first = Occupied(), next = Sample();
    SaveWorksheet(path, first.accounts, first.classes, first.result);
    const QByteArray previous = ReadBytes(path);
    const QString folder = dir.filePath(QStringLiteral("folder.tessary"));
    ASSERT_TRUE(QDir().mkdir(folder));
    auto entries = [&] { return QDir(dir.path()).entryList(QDir::AllEntries | QDir::NoDotAndDotDot | QDir::Hidden); };
    const QStringList before = entries();

    for (const QString& bad : {folder, dir.filePath(QStringLiteral("missing/client.tessary"))})
        EXPECT_THROW(SaveWorksheet(bad, next.accounts, next.classes, next.result), EWorksheet) << bad.toStdString();
    EXPECT_TRUE(QFileInfo(folder).isDir());

    QFile::setPermissions(dir.path(), QFile::ReadOwner | QFile::ExeOwner | QFile::ReadOther | QFile::ExeOther);
    std::string message;
    const bool ran = AsOrdinaryUser([&] {
        try {
            SaveWorksheet(path, next.accounts, next.classes, next.result);
        } catch (const EWorksheet& e) {
            EXPECT_EQ(e.GetFault(), EWorksheet::Fault::Unwritable);
            message = e.what();
        }
    });
    QFile::setPermissions(dir.path(), QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner);
    if (ran) {
        EXPECT_NE(message.find(path.toStdString()), std::string::npos) << "read-only folder: " << message;
    }
    EXPECT_EQ(ReadBytes(path), previous);
    EXPECT_EQ(entries(), before);   // no temporary left behind

    SaveWorksheet(path, next.accounts, next.classes, next.result);
    TGrids loaded;
    LoadWorksheet(path, loaded.accounts, loaded.classes, loaded.result);
    ExpectSameGrids(next, loaded);
    EXPECT_EQ(entries(), before);
}

} // namespace
