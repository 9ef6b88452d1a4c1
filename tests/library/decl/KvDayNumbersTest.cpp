// The one conversion between day numbers (days since 30 December 1899) and
// calendar dates.
#include <gtest/gtest.h>

#include <cstdint>

#include "decl/KvDayNumbers.h"

namespace {

struct DateCase {
    std::int64_t dayNumber;
    std::int64_t year;
    unsigned month, day;
};

// Each row both ways: date to day number and back.
const DateCase kDates[] = {
    {0, 1899, 12, 30},          // the products' epoch
    {1, 1899, 12, 31},
    {2, 1900, 1, 1},
    {60, 1900, 2, 28},          // 1900 is not a leap year ...
    {61, 1900, 3, 1},           // ... so 1 March follows 28 February
    {-1, 1899, 12, 29},
    {-693593, 1, 1, 1},         // the first day of year 1
    {-693594, 0, 12, 31},       // the day before: year 0 is 1 BC
    {25569, 1970, 1, 1},        // the Unix epoch
    {36585, 2000, 2, 29},       // 2000 is a leap year (divisible by 400)
    {36586, 2000, 3, 1},
    {38956, 2006, 8, 27},       // file versions of "FinItems.dat"
    {42969, 2017, 8, 22},
    {45351, 2024, 2, 29},       // a leap day
    {45352, 2024, 3, 1},
    {47542, 2030, 2, 28},       // not a leap year
    {47543, 2030, 3, 1},
    {2958465, 9999, 12, 31},
};

TEST(DayNumbers, DatesBothWays) {
    for (const DateCase& c : kDates) {
        EXPECT_EQ(kv::DayNumberOfDate(c.year, c.month, c.day), c.dayNumber) << c.year << "-" << c.month << "-" << c.day;
        const kv::TCivilDate date = kv::DateOfDayNumber(c.dayNumber);
        EXPECT_EQ(date, (kv::TCivilDate{c.year, c.month, c.day})) << c.dayNumber;
    }
}

TEST(DayNumbers, FractionsAreTheTimeOfDay) {
    struct Case {
        double dayNumber;
        kv::TCivilDateTime want;
    };
    const Case cases[] = {
        {0.0, {{1899, 12, 30}, 0}},
        {45123.5, {{2023, 7, 16}, 12 * 3600000}},
        {45123.75, {{2023, 7, 16}, 18 * 3600000}},
        {-0.25, {{1899, 12, 29}, 18 * 3600000}},   // the day is the floor: a negative fraction counts back
        {-1.5, {{1899, 12, 28}, 12 * 3600000}},
        {2.0 + 1.0 / 86400, {{1900, 1, 1}, 1000}},
        {10.9999999999, {{1900, 1, 10}, 0}},        // rounds up to the next day at 0:00
        {45351.999, {{2024, 2, 29}, 86400000 - 86400}},
    };
    for (const Case& c : cases) EXPECT_EQ(kv::DateTimeOfDayNumber(c.dayNumber), c.want) << c.dayNumber;
}

TEST(DayNumbers, EveryDayOfFourCenturiesRoundTrips) {
    std::int64_t previous = kv::DayNumberOfDate(1799, 12, 31);
    for (std::int64_t n = previous + 1; n <= kv::DayNumberOfDate(2200, 12, 31); ++n) {
        const kv::TCivilDate d = kv::DateOfDayNumber(n);
        ASSERT_EQ(kv::DayNumberOfDate(d.Year, d.Month, d.Day), n);
        ASSERT_EQ(n, previous + 1);
        previous = n;
    }
}

} // namespace
