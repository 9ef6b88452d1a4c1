// Per-year values: a value that changes over time (each setting holds from
// its year until the next), a dense array over consecutive years, and a
// dictionary from integers to floats.
#pragma once

#include <cstdint>
#include <map>
#include <string>
#include <vector>

#include "decl/KvValueLists.h"

namespace kv {

// A step function of the year: the value set for the nearest year at or
// before the one asked, the initial value before the first setting.
class TValueOverTime {
public:
    explicit TValueOverTime(double initial = 0) : Initial(initial) {}
    double Initial;
    void SetFrom(std::int32_t year, double value) { changes_.PutVal(year, value); }
    double ValueIn(std::int32_t year) const;
    bool Changes() const { return changes_.Count() > 0; }
    void Clear() { changes_.Clear(); }
    // The text form of the changes (that of TIndDblList); Initial is not in it.
    std::string Encode() const { return changes_.GetAsString(); }
    void Decode(const std::string& text) { changes_.SetAsString(text); }

private:
    TIndDblList changes_;
};

// One value per year from FirstYear to LastYear; 0 outside when read.
class TYearsArray {
public:
    TYearsArray() = default;
    TYearsArray(std::int32_t firstYear, std::int32_t lastYear) { Init(firstYear, lastYear); }
    // Empty when lastYear < firstYear; spans over 10000 years raise EListError.
    void Init(std::int32_t firstYear, std::int32_t lastYear);
    std::int32_t FirstYear() const { return first_; }
    std::int32_t LastYear() const { return first_ + Count() - 1; }
    int Count() const { return static_cast<int>(vals_.size()); }
    bool Contains(std::int32_t year) const { return year >= first_ && year - first_ < Count(); }
    double Get(std::int32_t year) const { return Contains(year) ? vals_[std::size_t(year - first_)] : 0; }
    // A year outside raises EListError.
    void Put(std::int32_t year, double value);
    void Add(std::int32_t year, double value) { Put(year, Get(year) + value); }
    double Total() const;
    // Adds sign x the other array's values over the years both hold.
    void AddVals(const TYearsArray& other, int sign);

private:
    std::int32_t first_ = 0;
    std::vector<double> vals_;
};

// Integer keys to float values, 0 when absent, walked in key order.
class TIntDblDictionary {
public:
    double GetVal(std::int32_t key) const;
    void PutVal(std::int32_t key, double value) { vals_[key] = value; }
    void Add(std::int32_t key, double value) { vals_[key] += value; }
    bool Exists(std::int32_t key) const { return vals_.contains(key); }
    void Remove(std::int32_t key) { vals_.erase(key); }
    int Count() const { return static_cast<int>(vals_.size()); }
    void Clear() { vals_.clear(); }
    const std::map<std::int32_t, double>& Items() const { return vals_; }

private:
    std::map<std::int32_t, double> vals_;
};

} // namespace kv
