#include <chrono>
#include <cmath>

#include "parties/KvFnParty.h"

namespace kv {

namespace {

using namespace std::chrono;

const sys_days kDayZero = sys_days(1899y / December / 30);

// Day numbers beyond years 1..9999 are damage; they count as day 0.
year_month_day DateOf(double dayNumber) {
    if (!std::isfinite(dayNumber) || dayNumber < -693593 || dayNumber > 2958465) dayNumber = 0;
    return year_month_day(kDayZero + days(static_cast<long>(std::floor(dayNumber))));
}

constexpr std::uint32_t kPalette[] = {0x1F77B4, 0xD62728, 0x2CA02C, 0xFF7F0E, 0x9467BD, 0x8C564B, 0xE377C2, 0x17BECF};

} // namespace

std::int32_t TParty::BirthYear() const { return static_cast<int>(DateOf(BirthDate).year()); }

double TParty::BirthdayInYear(std::int32_t y) const {
    const year_month_day birth = DateOf(BirthDate);
    year_month_day day = year(y) / birth.month() / birth.day();
    if (!day.ok()) day = year(y) / birth.month() / last; // 29 February in a common year
    return double((sys_days(day) - kDayZero).count());
}

std::int32_t TParty::AgeInDate(double date) const {
    const std::int32_t y = static_cast<int>(DateOf(date).year());
    const double d = std::isfinite(date) ? std::floor(date) : 0;
    return AgeInYear(y) - (d < BirthdayInYear(y) ? 1 : 0);
}

void TParty::Encode(TBufWriteFile& w, const TRecordContext& ctx) const {
    if (const auto* p = dynamic_cast<const TParticipant*>(this)) return WritePartyRecord(w, *p, ctx);
    TParticipant p(ID);
    p.Role = Role;
    p.PartyType = PartyType;
    p.FirstName = FirstName;
    p.LastName = LastName;
    p.BirthDate = BirthDate;
    WritePartyRecord(w, p, ctx);
}

std::unique_ptr<TParticipant> TParty::Decode(TBufReadFile& r, const TRecordContext& ctx) {
    return ReadPartyRecord(r, ctx);
}

void SetDefParticipantColor(TParticipant& p, int index) {
    constexpr int n = sizeof kPalette / sizeof kPalette[0];
    p.Color = kPalette[((index % n) + n) % n];
}

std::int32_t TTrust::NextDeemedDispositionYear(std::int32_t year, std::int32_t lifeInterestEnd) const {
    std::int32_t next = LifeInterest && lifeInterestEnd > 0 ? lifeInterestEnd : CreationYear + 21;
    while (next < year) next += 21;
    return next;
}

} // namespace kv
