// The order in which the import lists client files: newest first by the
// header date as the user's locale renders it, text against text, as the
// planning products order them; not by the day number.
#include <gtest/gtest.h>

#include <QCoreApplication>
#include <QDateTime>
#include <QLocale>
#include <cmath>
#include <cstdlib>
#include <ctime>
#include <limits>

#include "CatalogueTestUtil.h"
#include "catalogue/KvCatalogueFixture.h"
#include "import/ImportSession.h"

namespace {

const QLocale kUs(QLocale::English, QLocale::UnitedStates);

// Day number of a wall-clock date and time (days since 30 December 1899).
double DayNumber(int y, int m, int d, int hour, int minute) {
    const QDateTime epoch(QDate(1899, 12, 30), QTime(0, 0), Qt::UTC);
    return epoch.msecsTo(QDateTime(QDate(y, m, d), QTime(hour, minute), Qt::UTC)) / 86400000.0;
}

TEST(ClientFileOrder, HeaderDateRendersTheStoredWallClock) {
    struct C {
        double day;
        QDateTime shown;
    };
    const QDateTime epoch(QDate(1899, 12, 30), QTime(0, 0), Qt::UTC);
    const C cases[] = {
        {DayNumber(2024, 9, 5, 18, 0), QDateTime(QDate(2024, 9, 5), QTime(18, 0), Qt::UTC)},
        {DayNumber(2024, 3, 10, 2, 30), QDateTime(QDate(2024, 3, 10), QTime(2, 30), Qt::UTC)},   // a skipped hour in Toronto
        {DayNumber(2024, 1, 1, 0, 0) - 1e-9, QDateTime(QDate(2024, 1, 1), QTime(0, 0), Qt::UTC)},
        {std::numeric_limits<double>::quiet_NaN(), epoch},
        {1e300, epoch},
    };
    for (const C& c : cases)
        EXPECT_EQ(tessary::RenderHeaderDate(c.day, kUs), kUs.toString(c.shown, kUs.dateTimeFormat(QLocale::ShortFormat)))
            << c.day;
}

TEST(ClientFileOrder, NewestTextFirstNotNewestDay) {
    cattest::TempDir dir;
    const struct {
        const char* folder;
        const char* name;
        double date;
    } files[] = {
        {"md_db1_A", "October", DayNumber(2024, 10, 5, 9, 0)},
        {"md_db2_B", "September", DayNumber(2024, 9, 5, 9, 0)},
        {"md_db3_C", "January", DayNumber(2023, 1, 15, 9, 0)},
    };
    for (const auto& f : files) {
        kv::TClientFileSpec clientFile;
        clientFile.Name = f.name;
        clientFile.Date = f.date;
        kv::WriteClientFolder(dir.Dir(), f.folder, 0, clientFile);
    }
    ASSERT_TRUE(tessary::RenderHeaderDate(files[1].date).startsWith(QStringLiteral("9/5/24")))
        << "the test runs under en_US: " << tessary::RenderHeaderDate(files[1].date).toStdString();
    tessary::TImportSession session(tessary::TFolderOverrides{{}, QString::fromStdString(dir.Dir()), {}});
    session.ChooseProduct(0);
    // "9/5/24" > "10/5/24" > "1/15/23", character by character.
    EXPECT_EQ(session.FileNames(), (QStringList{"September", "October", "January"}));
}

} // namespace

int main(int argc, char** argv) {
    // A zone with daylight saving shows a shift to local time; the locale fixes the texts.
    ::setenv("TZ", "America/Toronto", 1);
    ::tzset();
    ::setenv("LC_ALL", "en_US.UTF-8", 1);
    QCoreApplication app(argc, argv);
    ::testing::InitGoogleTest(&argc, argv);
    return RUN_ALL_TESTS();
}
