// The allocation of one year over classes, sub-classes and third-level
// entries (TLibAllocYear): shares, amounts, the check and repair rules and
// the five text versions. Its text forms and tables are listed in
// docs/formats/allocation.md; the statistics it draws on are in
// KvReturnStatistics.h.
#pragma once

#include <array>
#include <cstdint>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "decl/KvAlcClasses.h"
#include "items/KvReturnStatistics.h"

namespace kv {

// Rounds to `places` decimals: the integer part of x * 10^places is kept and
// its fraction rounded half to even, which for a fraction of exactly one half
// gives 0. An exact half therefore goes toward zero (0.99995 -> 0.9999,
// -0.25 at one place -> -0.2); every share total is compared through it.
double RoundShare(double x, int places = 4);

// The three third-level lists.
enum TSubCls2List : int { kListCls3 = 0, kListCls4 = 1, kListCommon = 2 };

class TLibAllocYear {
public:
    static constexpr int ClsCount = kAlcClsCount;
    static constexpr int SubClsCount = kAlcSubClsCount;
    static constexpr int MaxSubCls2Count = 64;

    // Versions of the text form that Decode reads; 0 is the current form.
    static constexpr std::int32_t kVersion200507 = 200507; // class percentages
    static constexpr std::int32_t kVersion200803 = 200803; // + sub-class percentages
    static constexpr std::int32_t kVersion201202 = 201202; // + third level of classes 3 and 4
    static constexpr std::int32_t kVersion201304 = 201304; // + third level of the other classes
    static constexpr std::int32_t kVersion201404 = 201404; // shares (0..1) instead of percentages
    static constexpr std::int32_t kVersionCurrent = 0;     // 201404 without its version field

    // All shares and amounts 0, third-level counts from the program-wide
    // class list, the three lists as long as the grand total of the counts.
    TLibAllocYear();

    // Shares. A class, sub-class or entry index outside its range raises
    // EListError; an entry inside its count but past the end of its list
    // reads as 0, and setting it lengthens the list with zeros.
    double GetClsShare(int cls) const;
    void SetClsShare(int cls, double share);
    double GetSubClsShare(int cls, int sub) const;
    void SetSubClsShare(int cls, int sub, double share);
    double GetSubCls2Share(int cls, int sub, int entry) const;
    void SetSubCls2Share(int cls, int sub, int entry, double share);

    // Third-level counts (0..MaxSubCls2Count). Changing one moves no share:
    // later entries then read from other positions of the list.
    int GetSubCls2Count(int cls, int sub) const;
    void SetSubCls2Count(int cls, int sub, int count);
    int SubCls2Total() const;
    // The list that holds the entries of a class, and an entry's position in it.
    static TSubCls2List ListOfCls(int cls) { return cls == 3 ? kListCls3 : cls == 4 ? kListCls4 : kListCommon; }
    int SubCls2Pos(int cls, int sub, int entry) const;
    const std::vector<double>& SubCls2List(TSubCls2List list) const;
    void SetSubCls2List(TSubCls2List list, std::vector<double> shares);

    // Amounts. A class's amount is the sum of its sub-classes'; a sub-class
    // with third-level entries holds the sum of its entries' amounts, and
    // setting it spreads the amount over the entries in proportion to their
    // shares (all to the first entry while those total 0 or less).
    double GetClsVal(int cls) const;
    double GetSubClsVal(int cls, int sub) const;
    void SetSubClsVal(int cls, int sub, double value);
    double GetSubCls2Val(int cls, int sub, int entry) const;
    void SetSubCls2Val(int cls, int sub, int entry, double value);
    double GetTotalVal() const;

    // The invariants: class shares total 0 or 1; within each class the
    // sub-class shares total 0 or 1; under each sub-class with entries, the
    // entries total 0 or the sub-class share. Totals rounded with RoundShare;
    // negative and non-finite shares count as 0.
    bool SharesOK() const;
    // The repair, step by step as in docs/formats/allocation.md; true when
    // nothing needed repair. It does not rescale, so SharesOK may still fail.
    bool FixShares();

    // The current text form (no version field).
    std::string Encode() const;
    // The form of an older version, or of the current one for 0; another
    // version raises EKvError.
    std::string EncodeAs(std::int32_t version) const;
    // Reads a text of any version: a first field equal to one of the five
    // version numbers selects that version, anything else is the current
    // form. Shares and amounts are cleared first; the counts of this year
    // decide the layout. Missing or unreadable numbers read as 0. True when
    // every expected field was there and readable and none was left over.
    bool Decode(std::string_view text);
    // Rows "class,subclass,entry,percent" (indexes from 0; empty subclass:
    // a class row, empty entry: a sub-class row). Clears shares and amounts
    // first; skips blank rows and rows it cannot use; returns the number of
    // rows applied. A sub-class that received entry rows takes their total.
    int DecodeCSV(std::string_view text);

    // Equal shares over the chosen classes (all six by default), 1/7 to
    // each sub-class, and a sub-class's share split equally over its entries.
    static TLibAllocYear GetEvenlyAllocation();
    static TLibAllocYear GetEvenlyAllocation(std::span<const int> classes);

    // Amounts from the shares as they stand: a sub-class without entries
    // gets total * class share * sub-class share, an entry total * class
    // share * entry share.
    void CalcAlloc(double total);
    // Mean yearly return: sum of w_c * r_c over classes, w the class shares
    // (negative and non-finite counted as 0); the one-argument form uses
    // the means of ClsStats.
    double CalcGrowth() const;
    double CalcGrowth(const std::array<double, kAlcClsCount>& clsReturns) const;
    // Standard deviation of the yearly return: sqrt(sum_ij w_i w_j
    // rho_ij s_i s_j) with ClsStats.
    double CalcStDAlloc() const;
    // The standard deviation of one class (ClsStats).
    static double GetStDev(int cls);
    // Yearly returns of the allocation drawn from correlated normal class
    // returns; the same seed gives the same rates. years <= 0 gives none;
    // more than 100,000 raises EKvError.
    std::vector<double> GetRandRates(std::uint64_t seed, int years) const;

private:
    using TSubRow = std::array<double, SubClsCount>;
    struct TAmounts {
        std::array<TSubRow, ClsCount> Sub{};
        std::array<std::vector<double>, 3> Lists;
    };

    void CheckCls(int cls) const;
    void CheckSub(int cls, int sub) const;
    void CheckEntry(int cls, int sub, int entry) const;
    void ClearValues();
    void SizeListsToTotal();
    // Position of a sub-class's first entry in its list.
    int FirstPos(int cls, int sub) const;
    double Entry(const std::vector<double>& list, int pos) const;
    static void PutEntry(std::vector<double>& list, int pos, double v);
    void RebuildAmounts();

    std::array<double, ClsCount> cls_{};
    std::array<TSubRow, ClsCount> sub_{};
    std::array<std::array<std::int32_t, SubClsCount>, ClsCount> counts_{};
    std::array<std::vector<double>, 3> lists_;
    TAmounts vals_;
};

} // namespace kv
