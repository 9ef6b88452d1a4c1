// Day numbers: the products' dates, counted in days since 30 December 1899
// (day 0), the time of day as the fraction (45123.5 is 2023-07-16 12:00).
// This is the program's one conversion between day numbers and calendar
// dates; everything else (date-time texts, years of dates, the window's
// QDateTime) goes through it. Proleptic Gregorian calendar with astronomical
// year numbering: year 0 is 1 BC, year -1 is 2 BC.
#pragma once

#include <cstdint>

namespace kv {

// Day number of 1 January 1970.
inline constexpr std::int64_t kUnixEpochDayNumber = 25569;
inline constexpr std::int64_t kMillisecondsPerDay = 86400000;

struct TCivilDate {
    std::int64_t Year = 1899;
    unsigned Month = 12; // 1..12
    unsigned Day = 30;   // 1..31
    bool operator==(const TCivilDate&) const = default;
};

struct TCivilDateTime {
    TCivilDate Date;
    std::int64_t Millisecond = 0; // of the day, 0..86,399,999
    bool operator==(const TCivilDateTime&) const = default;
};

// The whole day number of a date (month 1..12, day 1..31 of that month).
std::int64_t DayNumberOfDate(std::int64_t year, unsigned month, unsigned day);
// The date of a whole day number.
TCivilDate DateOfDayNumber(std::int64_t dayNumber);
// The date and time of a day number: the day is the floor of the number (so
// -0.25 is 29 December 1899, 18:00), the fraction rounded to the millisecond;
// a fraction that rounds to a whole day gives the next day at 0:00. The
// number must be finite and within a few million days of the epoch; callers
// test their own range first.
TCivilDateTime DateTimeOfDayNumber(double dayNumber);

} // namespace kv
