#include "decl/KvYearsArray.h"

#include "KvErrors.h"

namespace kv {

double TValueOverTime::ValueIn(std::int32_t year) const {
    const std::int32_t at = changes_.IndOfNearest(year);
    // IndOfNearest answers -1 both for "none" and for a setting of year -1.
    if (at == -1 && !(year >= -1 && changes_.ValueExists(-1))) return Initial;
    return changes_.GetVal(at);
}

void TYearsArray::Init(std::int32_t firstYear, std::int32_t lastYear) {
    const long long span = static_cast<long long>(lastYear) - firstYear + 1;
    if (span > 10000) throw EListError(span);
    first_ = firstYear;
    vals_.assign(span > 0 ? std::size_t(span) : 0, 0.0);
}

void TYearsArray::Put(std::int32_t year, double value) {
    if (!Contains(year)) throw EListError(static_cast<long long>(year) - first_);
    vals_[std::size_t(year - first_)] = value;
}

double TYearsArray::Total() const {
    double t = 0;
    for (double v : vals_) t += v;
    return t;
}

void TYearsArray::AddVals(const TYearsArray& other, int sign) {
    for (std::int32_t y = other.FirstYear(); y <= other.LastYear(); ++y)
        if (Contains(y)) vals_[std::size_t(y - first_)] += sign * other.Get(y);
}

double TIntDblDictionary::GetVal(std::int32_t key) const {
    const auto it = vals_.find(key);
    return it == vals_.end() ? 0 : it->second;
}

} // namespace kv
