// Asset-class allocation of portfolios: the allocation record a portfolio
// owns (TPortAllocation and its variants) and the allocation of one year over
// classes, sub-classes and third-level entries (TLibAllocYear), with its
// check and repair rules, its text forms and a few portfolio statistics.
// The text forms and tables are listed in docs/formats/allocation.md.
#pragma once

#include <array>
#include <cstdint>
#include <memory>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "decl/KvAlcClasses.h"
#include "decl/KvValueLists.h"

namespace kv {

// ---------------------------------------------------------------------------
// Shared helpers

// Rounds to `places` decimals: the integer part of x * 10^places is kept and
// its fraction rounded half to even, which for a fraction of exactly one half
// gives 0. An exact half therefore goes toward zero (0.99995 -> 0.9999,
// -0.25 at one place -> -0.2); every share total is compared through it.
double RoundShare(double x, int places = 4);

// Unique ids as text: the 32-bit pattern as 8 upper-case hex digits. Reading
// takes 1 to 8 hex digits in either case and nothing else.
std::string UniqueIDToText(std::int32_t id);
bool TryTextToUniqueID(std::string_view text, std::int32_t& id);

// The program's date-time text, "yyyy-mm-dd hh:nn:ss.zzz", of a day count
// since 30 December 1899 (time of day as the fraction).
std::string DateTimeToText(double dateTime);
// The local date and time now as such a day count.
double NowDateTime();

// Kind labels of allocations (TPortAllocation::Kind indexes them).
std::span<const std::string_view> AllocKindLabels();
// The label of a kind; "Allocation" for a kind outside the table.
std::string_view AllocKindLabel(std::int32_t kind);
inline constexpr std::int32_t kAllocKindLibrary = 2;

// The library models an allocation of kind 2 may follow.
struct TLibModel {
    std::int32_t ID;
    std::string_view Name;
    std::array<double, kAlcClsCount> ClsShares;
};
std::span<const TLibModel> LibModels();
const TLibModel* FindLibModel(std::int32_t id);

// ---------------------------------------------------------------------------
// Allocation of a portfolio

// Fields in text order: ID, Name, Text, Reference, Flag1, Flag2, Kind, Flag4.
// Texts are joined with ";"; a ";" or "\" inside a text is written "\;" or
// "\\", and any other "\" reads as itself.
class TPortAllocation {
public:
    // A new allocation: ID from the current date and time, all else 0 or empty.
    TPortAllocation();
    // An allocation with the given ID, all else 0 or empty.
    explicit TPortAllocation(std::int32_t id);
    virtual ~TPortAllocation() = default;

    std::int32_t ID = 0;
    std::string Name;
    std::string Text;
    std::string SavedText;        // Text as last read; changes are measured against it
    std::int32_t Reference = 0;   // kind 2: the library model followed
    std::int32_t Flag1 = 0;
    std::int32_t Flag2 = 0;
    std::int32_t Kind = 0;
    std::int32_t Flag4 = 0;

    virtual const char* ClassName() const { return "TPortAllocation"; }

    std::string GetAsString() const;
    // Missing or unreadable fields: ID and Reference 0, texts empty, the four
    // small integers 0, 1, 1, 0. Fields past those a class reads are ignored.
    void SetAsString(std::string_view text);
    virtual std::unique_ptr<TPortAllocation> Clone() const;

    // Kind label + ": " + (kind 2: library model name + ", ") + Name. A
    // reference that names no library model gives "Unknown model".
    std::string GetFullName() const;
    bool TextChanged() const { return Text != SavedText; }

    // The id of an allocation made at that moment: the CRC-32 of its
    // date-time text (DateTimeToText), as a signed value.
    static std::int32_t IDFromDateTime(double dateTime);

protected:
    TPortAllocation(const TPortAllocation&) = default;
    TPortAllocation& operator=(const TPortAllocation&) = default;

    // Each class writes and reads its fields after those of its base.
    virtual void WriteFields(std::vector<std::string>& f) const;
    virtual void ReadFields(const std::vector<std::string>& f, std::size_t& pos);
};

// Detailed holdings: after the eight fields, a count and five fields a holding.
class TCHPortAllocation : public TPortAllocation {
public:
    struct THolding {
        std::string Symbol;
        std::int32_t Cls = 0;
        std::int32_t SubCls = 0;
        std::int32_t SubCls2 = -1;  // -1: the sub-class itself
        double Value = 0;
        bool operator==(const THolding&) const = default;
    };
    using TPortAllocation::TPortAllocation;
    const char* ClassName() const override { return "TCHPortAllocation"; }
    std::unique_ptr<TPortAllocation> Clone() const override;

    std::vector<THolding> Holdings;
    // Sum of the holdings' values of a class.
    double ClsValue(int cls) const;

protected:
    void WriteFields(std::vector<std::string>& f) const override;
    void ReadFields(const std::vector<std::string>& f, std::size_t& pos) override;
};

// Class targets: after the eight fields, the six class shares.
class TPAClass : public TPortAllocation {
public:
    using TPortAllocation::TPortAllocation;
    const char* ClassName() const override { return "TPAClass"; }
    std::unique_ptr<TPortAllocation> Clone() const override;

    std::array<double, kAlcClsCount> ClsShares{};

protected:
    void WriteFields(std::vector<std::string>& f) const override;
    void ReadFields(const std::vector<std::string>& f, std::size_t& pos) override;
};

// Separately managed account: TPAClass, then manager, fee rate (per cent a
// year) and minimum account size.
class TPASMAClass : public TPAClass {
public:
    using TPAClass::TPAClass;
    const char* ClassName() const override { return "TPASMAClass"; }
    std::unique_ptr<TPortAllocation> Clone() const override;

    std::string Manager;
    double FeeRate = 0;
    double MinAccount = 0;

protected:
    void WriteFields(std::vector<std::string>& f) const override;
    void ReadFields(const std::vector<std::string>& f, std::size_t& pos) override;
};

class TLibAllocYear;

// Fee rates by asset class (per cent a year): after the eight fields, six rates.
class TFeesAssetClassesPr : public TPortAllocation {
public:
    using TPortAllocation::TPortAllocation;
    const char* ClassName() const override { return "TFeesAssetClassesPr"; }
    std::unique_ptr<TPortAllocation> Clone() const override;

    std::array<double, kAlcClsCount> FeeRates{};
    // Sum over classes of total * class share * rate / 100; negative and
    // non-finite shares count as 0.
    double AnnualFee(const TLibAllocYear& year, double total) const;

protected:
    void WriteFields(std::vector<std::string>& f) const override;
    void ReadFields(const std::vector<std::string>& f, std::size_t& pos) override;
};

class TPortAllocList {
public:
    int Count() const { return static_cast<int>(items_.size()); }
    // Both raise EListError for a position outside the list.
    TPortAllocation* Get(int index) const;
    void Put(int index, std::unique_ptr<TPortAllocation> item);
    TPortAllocation* Add(std::unique_ptr<TPortAllocation> item);
    void Delete(int index);
    void Clear() { items_.clear(); }
    // First allocation with that ID, or -1 / null.
    int IndexOfID(std::int32_t id) const;
    TPortAllocation* FindByID(std::int32_t id) const;

private:
    std::vector<std::unique_ptr<TPortAllocation>> items_;
};

// ---------------------------------------------------------------------------
// Sub-class records: "Cls;SubCls;Name", extended by each descendant.

class TAssetSubClassHdr {
public:
    TAssetSubClassHdr() = default;
    TAssetSubClassHdr(std::int32_t cls, std::int32_t subCls, std::string name)
        : Cls(cls), SubCls(subCls), Name(std::move(name)) {}
    virtual ~TAssetSubClassHdr() = default;
    virtual const char* ClassName() const { return "TAssetSubClassHdr"; }

    std::int32_t Cls = 0;
    std::int32_t SubCls = 0;
    std::string Name;

    std::string GetAsString() const;
    // Missing or unreadable numbers read as 0 (SubCls2 as -1).
    void SetAsString(std::string_view text);
    virtual std::unique_ptr<TAssetSubClassHdr> Clone() const;

protected:
    TAssetSubClassHdr(const TAssetSubClassHdr&) = default;
    TAssetSubClassHdr& operator=(const TAssetSubClassHdr&) = default;
    virtual void WriteFields(std::vector<std::string>& f) const;
    virtual void ReadFields(const std::vector<std::string>& f, std::size_t& pos);
};

// + SubCls2 (-1: the sub-class itself) and Share.
class TAssetSubClass : public TAssetSubClassHdr {
public:
    using TAssetSubClassHdr::TAssetSubClassHdr;
    const char* ClassName() const override { return "TAssetSubClass"; }
    std::unique_ptr<TAssetSubClassHdr> Clone() const override;

    std::int32_t SubCls2 = -1;
    double Share = 0;

protected:
    void WriteFields(std::vector<std::string>& f) const override;
    void ReadFields(const std::vector<std::string>& f, std::size_t& pos) override;
};

// + the net asset value and the returns by year (a TIndDblList text).
class TLibAssetSubClass : public TAssetSubClass {
public:
    using TAssetSubClass::TAssetSubClass;
    const char* ClassName() const override { return "TLibAssetSubClass"; }
    std::unique_ptr<TAssetSubClassHdr> Clone() const override;

    double NAV = 0;
    TIndDblList Returns;
    // Compound growth over the years from..to (inclusive) with the stored
    // returns, a missing year counting as 0: prod(1 + r) - 1.
    double CompoundReturn(std::int32_t fromYear, std::int32_t toYear) const;

protected:
    void WriteFields(std::vector<std::string>& f) const override;
    void ReadFields(const std::vector<std::string>& f, std::size_t& pos) override;
};

// ---------------------------------------------------------------------------
// Allocation of one year

// The three third-level lists.
enum TSubCls2List : int { kListCls3 = 0, kListCls4 = 1, kListCommon = 2 };

// Capital-market assumptions by class: mean yearly return and standard
// deviation, and the correlation between classes.
struct TClsStats {
    std::array<double, kAlcClsCount> Mean;
    std::array<double, kAlcClsCount> StDev;
    std::array<std::array<double, kAlcClsCount>, kAlcClsCount> Correl;
};
const TClsStats& ClsStats();

class TLibAllocYear {
public:
    static constexpr int ClsCount = kAlcClsCount;
    static constexpr int SubClsCount = kAlcSubClsCount;
    static constexpr int MaxSubCls2Count = 64;

    // Versions of the text form that Decode reads; 0 is the current form.
    static constexpr std::int32_t kVersion200507 = 200507;  // class percentages
    static constexpr std::int32_t kVersion200803 = 200803;  // + sub-class percentages
    static constexpr std::int32_t kVersion201202 = 201202;  // + third level of classes 3 and 4
    static constexpr std::int32_t kVersion201304 = 201304;  // + third level of the other classes
    static constexpr std::int32_t kVersion201404 = 201404;  // shares (0..1) instead of percentages
    static constexpr std::int32_t kVersionCurrent = 0;      // 201404 without its version field

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
