#include "decl/KvDayNumbers.h"

#include <cmath>

namespace kv {

// Howard Hinnant's civil-date algorithms ("chrono-Compatible Low-Level Date
// Algorithms"), with days counted from 1 January 1970.

std::int64_t DayNumberOfDate(std::int64_t y, unsigned m, unsigned d) {
    y -= m <= 2;
    const std::int64_t era = (y >= 0 ? y : y - 399) / 400;
    const unsigned yoe = static_cast<unsigned>(y - era * 400);
    const unsigned doy = (153 * (m > 2 ? m - 3 : m + 9) + 2) / 5 + d - 1;
    const unsigned doe = yoe * 365 + yoe / 4 - yoe / 100 + doy;
    return era * 146097 + static_cast<std::int64_t>(doe) - 719468 + kUnixEpochDayNumber;
}

TCivilDate DateOfDayNumber(std::int64_t dayNumber) {
    const std::int64_t z = dayNumber - kUnixEpochDayNumber + 719468;
    const std::int64_t era = (z >= 0 ? z : z - 146096) / 146097;
    const unsigned doe = static_cast<unsigned>(z - era * 146097);
    const unsigned yoe = (doe - doe / 1460 + doe / 36524 - doe / 146096) / 365;
    const unsigned doy = doe - (365 * yoe + yoe / 4 - yoe / 100);
    const unsigned mp = (5 * doy + 2) / 153;
    TCivilDate date;
    date.Day = doy - (153 * mp + 2) / 5 + 1;
    date.Month = mp < 10 ? mp + 3 : mp - 9;
    date.Year = static_cast<std::int64_t>(yoe) + era * 400 + (date.Month <= 2);
    return date;
}

TCivilDateTime DateTimeOfDayNumber(double dayNumber) {
    auto days = static_cast<std::int64_t>(std::floor(dayNumber));
    auto ms = static_cast<std::int64_t>(std::llround((dayNumber - double(days)) * double(kMillisecondsPerDay)));
    if (ms >= kMillisecondsPerDay) {
        ++days;
        ms -= kMillisecondsPerDay;
    }
    return {DateOfDayNumber(days), ms};
}

} // namespace kv
